#pragma once
// The one drawing pass of the plot: grid, limit lines, traces, cursors.

namespace kw {

// A complete repaint of grafik from the state. Refused while a pass runs (nothing is queued).
void DrawPlot();

}  // namespace kw
