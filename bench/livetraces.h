#pragma once
// The live plot the drawing benchmarks stand on: 0..1000 MHz, -20..-100 dB, four traces of a
// noisy spectrum with a few carriers, all shown.

#include "shell/state.h"

#include <cmath>

namespace kwbench {

// A spectrum with noise and a few carriers, in plot units.
inline int16_t level(int i, int trace)
{
    const double noise = std::sin(i * 12.9898 + trace * 78.233) * 43758.5453;
    const double frac = noise - std::floor(noise);
    double y = -220 + 20 * frac;
    if (i % 250 == 0)
        y = -90 - trace * 5;
    return int16_t(y);
}

inline void showFourLiveTraces()
{
    using kw::st;
    st.freqstart = 0.0f;
    st.freqstop = 1000.0f;
    st.span = 1000;
    st.grafikmax = -50;
    st.grafikmin = -250;
    st.viewsample = st.viewaverage = st.viewmaxhold = st.viewb = 1;
    for (int i = 1; i <= 2001; ++i) {
        st.sampledata[size_t(i)] = level(i, 0);
        st.averagedata[size_t(i)] = level(i, 1);
        st.maxholddata[size_t(i)] = level(i, 2);
        st.memorydata[size_t(i)] = level(i, 3);
    }
}

}  // namespace kwbench
