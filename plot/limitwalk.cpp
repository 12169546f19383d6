#include "plot/limitwalk.h"

#include "platform/vbformat.h"
#include "platform/surface.h"
#include "plot/axes.h"
#include "plot/page.h"
#include "plot/plotline.h"
#include "shell/state.h"

#include <cmath>

namespace kw {

namespace {

constexpr int kNameOffset = 10000;  // the name of a limit starts one per cent right of its line

const QString *walkedName = nullptr;

void limitName(float frequency, int16_t y, const QString &text, uint8_t colour)
{
    Surface *page = currentPage();
    if (!page)
        return;
    page->currentX = FreqToX(frequency) + kNameOffset;
    page->currentY = y;
    page->foreColour = ink(colour);
    page->print(text);
}

// Level in dB to plot units, truncated, as a 16-bit value; nothing when it does not fit.
std::optional<int16_t> plotY(double level)
{
    const double y = std::trunc(level * 2.5);
    if (!(y >= -32768.0 && y <= 32767.0))
        return std::nullopt;
    return int16_t(y);
}

void line(float fa, double la, float fb, double lb, uint8_t colour)
{
    const auto ya = plotY(la);
    const auto yb = plotY(lb);
    if (!ya || !yb || !PlotLine(fa, *ya, fb, *yb, colour))
        return;
    if (walkedName && st.limitnameprinted == 0 && currentPage()) {
        limitName(fa, *ya, *walkedName, colour);
        st.limitnameprinted = 1;
    }
}

// The extent is kept in dB, rounded to 16 bits: the widening compares it with plot units as it is.
void widen(float level)
{
    if (level > st.limithigh) {
        try {
            st.limithigh = vbCInt(level);
        } catch (const VbError &) {
        }
    }
    if (level < st.limitlow) {
        try {
            st.limitlow = vbCInt(level);
        } catch (const VbError &) {
        }
    }
}

void zeroSpanLimit(const LimitLine &limit)
{
    if (!limit.searchable)
        return;
    // The searches compare with the start frequency as the criterion text carries it.
    const double criterion = vbVal(vbTrim(vbStr(st.freqstart)));
    const LimitRow *below = nullptr;
    const LimitRow *above = nullptr;
    for (const LimitRow &row : limit.rows)
        if (row.frequency && row.level && double(*row.frequency) <= criterion)
            below = &row;
    if (!below)
        return;
    for (const LimitRow &row : limit.rows) {
        if (row.frequency && row.level && double(*row.frequency) >= criterion) {
            above = &row;
            break;
        }
    }
    if (!above)
        return;
    const float f0 = *below->frequency;
    const float f1 = *above->frequency;
    float l0 = *below->level;
    const float l1 = *above->level;
    if (st.freqstart > f0 && f1 != f0)
        l0 = (l1 - l0) * (st.freqstart - f0) / (f1 - f0) + l0;
    // A zero span axis has no x for the limit's name: the line stands without it.
    if (Surface *area = plotSurface())
        area->line(0, double(l0) * 2.5, kPlotWidth, double(l0) * 2.5, ink(limit.colour));
    widen(l0);
}

void pieces(float a, float l0, float b, float l1, bool logInterpolation, uint8_t colour)
{
    const int count = curvedLimitPieces();
    const float s = (b - a) / float(count);
    const float last = b - s;
    const double la = log10floor(a);
    const double lb = log10floor(b);
    auto level = [&](float f) {
        if (logInterpolation)
            return double(l0) + double(l1 - l0) * (log10floor(f) - la) / (lb - la);
        return double(l0) + double(l1 - l0) * double(f - a) / double(b - a);
    };
    // Rows a few kHz apart high up the band give a step below the float spacing: the counter
    // would stand still, so such a short stretch is drawn in one piece.
    if (!(s > 0.0f) || a + s == a || last + s == last) {
        line(a, double(l0), b, double(l1), colour);
        return;
    }
    int guard = 0;
    for (float f = a; f <= last && guard < 4 * count; f += s, ++guard)
        line(f, level(f), f + s, level(f + s), colour);
}

void walk(const LimitLine &limit)
{
    const float fs = st.freqstart;
    const float fe = st.freqstop;
    float f0 = 0.0f, l0 = 0.0f, f1 = 0.0f, l1 = 0.0f;
    const LimitRow &first = limit.rows.front();
    if (first.frequency)
        f0 = *first.frequency;
    if (first.level)
        l0 = *first.level;
    for (size_t r = 1; r < limit.rows.size(); ++r) {
        const LimitRow &row = limit.rows[r];
        if (row.frequency)
            f1 = *row.frequency;
        if (row.level)
            l1 = *row.level;
        bool inband = true;
        float a = 0.0f, b = 0.0f;
        if (f0 <= fs && f1 >= fe) {
            a = fs;
            b = fe;
        } else if (f0 <= fe && f1 >= fe) {
            a = f0;
            b = fe;
        } else if (f0 >= fs && f1 <= fe) {
            a = f0;
            b = f1;
        } else if (f0 <= fs && f1 >= fs) {
            a = fs;
            b = f1;
        } else {
            inband = false;
        }
        if (inband) {
            // The far end is cut with the near level already moved and t still counted from the
            // old f0, so a segment cut at both ends ends slightly off its true line.
            if (a > f0 && f1 != f0) {
                const float t = (a - f0) / (f1 - f0);
                l0 = (l1 - l0) * t + l0;
            }
            if (b < f1 && f1 != f0) {
                const float t = (b - f0) / (f1 - f0);
                l1 = (l1 - l0) * t + l0;
            }
            const bool curved = st.logaxis || limit.logflag;
            const bool wide = b - a >= 0.001f;
            const bool sloped = l1 != l0;
            if (curved && wide && sloped && st.logaxis && limit.logflag == 0)
                pieces(a, l0, b, l1, false, limit.colour);
            else if (curved && wide && sloped && !st.logaxis && limit.logflag == -1)
                pieces(a, l0, b, l1, true, limit.colour);
            else if (!(curved && wide && sloped) || limit.logflag == -1)
                line(a, double(l0), b, double(l1), limit.colour);
        }
        f0 = f1;
        l0 = l1;
        widen(l0);
    }
}

}  // namespace

void drawLimit(const LimitLine &limit)
{
    st.limitnameprinted = 0;
    if (limit.rows.empty())
        return;
    walkedName = &limit.name;
    if (st.mode == 0 && st.span < 1)
        zeroSpanLimit(limit);
    else
        walk(limit);
    walkedName = nullptr;
}

}  // namespace kw
