#pragma once
// The coordinate system of the plot: x runs 0..1000000 across on every surface, levels are in plot
// units (2.5 to the dB). FreqToX is the one map from a frequency to x.

#include "levels/levelmath.h"

#include <QString>

namespace kw {

constexpr double kPlotWidth = 1000000.0;

// decadelow, decadehigh, decadestep from freqstart and freqstop.
void ComputeDecades();

// x of a frequency (MHz) on the present axis: linear, or logarithmic when logaxis is set. A
// negative x means off the plot. On an axis without width the division fails and the answer is 0.
double FreqToX(float frequency);
// x of a frequency on a linear axis from start to stop, whole-numbered; 0 on an axis without width.
double linearX(float frequency, float start, float stop);

// "###0.0K" below 1 MHz, "###0.00M" below 1000 MHz, "###0.000G" above.
QString FormatFrequency(float frequency);
// The text of a zero span plot under the axis: its G form has two decimals only.
QString zeroSpanText(float frequency);

// Which frequency axis the next pass draws.
enum class FreqAxis { Linear, Logarithmic, ZeroSpan };
FreqAxis frequencyAxis();

}  // namespace kw
