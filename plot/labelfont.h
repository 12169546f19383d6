#pragma once
// The font of the level and frequency labels beside the plot, chosen from the size of the
// pictures so that neighbouring labels never run into each other: as large as reads well, then
// narrowed, then smaller, until the widest label fits its room.

#include <QFont>

namespace kw {

// Labels under a plot of this width in pixels: ten divisions on a linear axis, a label at each.
QFont frequencyLabelFont(int plotWidth);
// Labels in the level strip of this width, left of a plot of this height, ending before the ticks.
QFont levelLabelFont(int stripWidth, int plotHeight);

}  // namespace kw
