#pragma once
// The one drawing pass of the plot: grid, limit lines, traces, cursors.

#include <functional>

namespace kw {

// A complete repaint of grafik from the state. Refused while a pass runs (nothing is queued).
void DrawPlot();

// The preview's own pass, run at the end of DrawPlot while previewopen is 1; the print preview
// installs it.
std::function<void()> &previewDrawing();

}  // namespace kw
