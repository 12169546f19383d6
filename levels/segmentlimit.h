#pragma once
// Judging a level against a limit: the limit's level between two neighbouring points.

namespace kw {

// The level of the limit at f on the segment from (fL, lL) to (fH, lH). Flat segments and those
// narrower than 1 kHz give lL; a logarithmic segment is the straight line on a log frequency axis.
// A sloped linear segment takes the width of the segment over the distance of f from its upper
// end, so it gives lH at fL and runs away toward fH, where it divides by zero: VbError(11), or
// VbError(6) for an overflow, goes to the caller.
float segmentlimit(float f, float fL, float lL, float fH, float lH, bool isLog);

}  // namespace kw
