#pragma once
// Peak, average and quasi-peak of one zero-span block (st.rawblock) at st.centerfreq.

#include "levels/quasipeak.h"

namespace kw {

struct BlockResult {
    int peak = 0;         // whole dB, the largest sample
    double average = 0;   // dB of the mean linear amplitude
    double qpeak = 0;     // dB of the quasi-peak model after the block
};

// Every sample through the noise gate, the level conversion and the correction chain to whole
// dB; the plot range follows the samples. The first sample sets peak and average and does not
// enter the model, which runs (with these divisors) only while detqpeak is 1.
BlockResult evaluateblock(QpDivisors (*divisors)(float centerfreq));

}  // namespace kw
