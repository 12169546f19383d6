#pragma once
// Lines of the plot given in frequency and level: everything but the grid's horizontals goes
// through these, so that FreqToX decides what is on the plot.

#include <cstdint>

namespace kw {

// A line from (f1, y1) to (f2, y2) on the plot area of the pass (Picture1 or the page); nothing
// when a frequency or an x is negative. Right of the plot and outside the level scale the picture
// cuts it off. True when the line was drawn.
bool PlotLine(float f1, int16_t y1, float f2, int16_t y2, uint8_t colour);
// A vertical line at f from y1 up to y2; nothing unless y1 is below y2.
void PlotStem(float f, int16_t y1, int16_t y2, uint8_t colour);

}  // namespace kw
