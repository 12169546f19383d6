#include "levels/rangetrack.h"

#include "platform/vbformat.h"
#include "shell/state.h"

#include <cstdlib>

namespace kw {

namespace {
int16_t to16(int v)
{
    if (v < INT16_MIN || v > INT16_MAX)
        throw VbError(6);
    return int16_t(v);
}
}  // namespace

RangeTrack beginrange() { return RangeTrack{st.grafikmin, st.grafikmax}; }

void applyrange(int16_t &grafikmin, int16_t &grafikmax, int lo, int hi)
{
    const int16_t low = to16(lo - 10);
    const int16_t high = to16(hi + 10);
    if (std::abs(grafikmin - low) > 10)
        grafikmin = low;
    if (std::abs(grafikmax - high) > 10)
        grafikmax = high;
    const int width = std::abs(grafikmax - grafikmin);
    if (width < 100)
        grafikmax = to16(grafikmax + 100 - width);
}

void finishrange(const RangeTrack &range) { applyrange(st.grafikmin, st.grafikmax, range.lo, range.hi); }

}  // namespace kw
