#pragma once
// The one drawing pass of the plot: grid, limit lines, traces, cursors.

#include "plot/limitwalk.h"

#include <functional>

namespace kw {

// A complete repaint of grafik from the state. Refused while a pass runs (nothing is queued).
void DrawPlot();

// The max hold limit (maxHold true) or the average limit as the view shows it.
LimitLine shownLimit(bool maxHold);
// The traces of measurefile, as the scan for mode and span draws them.
void scanMeasurementFile();

// The preview's own pass, run at the end of DrawPlot while previewopen is 1; the print preview
// installs it.
std::function<void()> &previewDrawing();

}  // namespace kw
