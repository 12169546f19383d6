#pragma once
// The two crosshairs over the plot, drawn in the inverting mode at the end of every pass.

namespace kw {

void DrawCursors();

}  // namespace kw
