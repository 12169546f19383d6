#pragma once
// The frame of the plot: scales, the frequency axis in its three forms, the level grid, the
// labels beside the plot.

#include <cstdint>

namespace kw {

// Clears and scales the three areas, and offers "Log" only for a span of a decade or more.
void SetPlotScale();
void FreqTick(float frequency, uint8_t colour);
void LevelTick(float y, uint8_t colour);
// Label5: the distance of the configuration, and the offset to the limit's distance.
void DistanceCaption();
// The frequency axis as frequencyAxis() chooses it, with its grid and labels.
void DrawFrequencyGrid();
void DrawLevelGrid();

}  // namespace kw
