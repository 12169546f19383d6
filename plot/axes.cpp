#include "plot/axes.h"

#include "platform/vbformat.h"
#include "shell/state.h"

#include <cmath>

namespace kw {

namespace {
// A decade search beyond this gives up: only a broken frequency gets there.
constexpr int kLastExponent = 30;
}

void ComputeDecades()
{
    st.decadelow = 0.0f;
    st.decadehigh = 0.0f;
    st.decadestep = 0.001f;
    // The running decade is a power of ten as exact as a float holds it, never a product of
    // repeated multiplications: the digit search must see 3 x 1 MHz as exactly 3 MHz.
    int exponent = -3;
    auto decade = [&exponent] { return float(std::pow(10.0, exponent)); };
    // The search walks digits 1..9 of each decade with a strict "above", so a start of exactly
    // 3 x d still stands on 3 x d, and a start between 9 x d and 10 x d lands on 10 x d.
    if (st.freqstart <= 0.002f) {
        st.decadelow = 0.001f;
    } else {
        for (; exponent <= kLastExponent; ++exponent) {
            const float d = decade();
            for (int k = 1; k <= 9; ++k) {
                if (float(k) * d > st.freqstart) {
                    st.decadelow = k == 1 ? d : float(k - 1) * d;
                    st.decadestep = d;
                    break;
                }
            }
            if (st.decadelow != 0.0f)
                break;
        }
    }
    for (; exponent <= kLastExponent; ++exponent) {
        const float d = decade();
        for (int k = 1; k <= 9; ++k) {
            if (float(k) * d > st.freqstop) {
                st.decadehigh = float(k) * d;
                return;
            }
        }
    }
}

double FreqToX(float frequency)
{
    if (st.logaxis) {
        if (frequency == 0.0f)
            return 0.0;
        const double low = log10floor(st.decadelow * 1000.0f);
        const double high = log10floor(st.decadehigh * 1000.0f);
        const double x = kPlotWidth / (high - low) * (log10floor(frequency * 1000.0f) - low);
        return std::isfinite(x) ? x : 0.0;
    }
    return linearX(frequency, st.freqstart, st.freqstop);
}

double linearX(float frequency, float start, float stop)
{
    // A division that fails is passed over like every failing step of a drawing, and the
    // answer stays 0.
    const float width = stop - start;
    if (width == 0.0f || !std::isfinite(width))
        return 0.0;
    const double x = std::trunc(double(frequency - start) * kPlotWidth / double(width));
    return std::isfinite(x) ? x : 0.0;
}

QString FormatFrequency(float frequency)
{
    if (frequency < 1.0f)
        return vbFormat(frequency * 1000.0f, QStringLiteral("###0.0K"));
    if (frequency < 1000.0f)
        return vbFormat(frequency, QStringLiteral("###0.00M"));
    return vbFormat(frequency / 1000.0f, QStringLiteral("###0.000G"));
}

QString zeroSpanText(float frequency)
{
    QString value;
    if (frequency < 1.0f)
        value = vbFormat(frequency * 1000.0f, QStringLiteral("###0.0K"));
    else if (frequency < 1000.0f)
        value = vbFormat(frequency, QStringLiteral("###0.00M"));
    else
        value = vbFormat(frequency / 1000.0f, QStringLiteral("###0.00G"));
    return QStringLiteral("Zerospan / Freq: ") + value;
}

FreqAxis frequencyAxis()
{
    const bool zeroSpan = st.mode == 0 && st.span < 1;
    if (!st.logaxis && !zeroSpan)
        return FreqAxis::Linear;
    return zeroSpan ? FreqAxis::ZeroSpan : FreqAxis::Logarithmic;
}

}  // namespace kw
