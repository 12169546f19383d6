#pragma once
// The plot's level range follows the traces, in counts, with a dead band of 10 counts so that a
// trace that wanders a little does not rescale the plot, and never narrower than 100 counts (40 dB).

#include <cstdint>

namespace kw {

struct RangeTrack {
    int lo;
    int hi;
    void see(int level)
    {
        if (level < lo)
            lo = level;
        if (level > hi)
            hi = level;
    }
};

// Starts from the present grafikmin and grafikmax.
RangeTrack beginrange();

// Widens by 10 each way and moves grafikmin/grafikmax where they lie more than 10 counts off.
// A result beyond 16 bits raises the classic overflow.
void finishrange(const RangeTrack &range);

// The same rule on given values, for tests and for callers that keep their own pair.
void applyrange(int16_t &grafikmin, int16_t &grafikmax, int lo, int hi);

}  // namespace kw
