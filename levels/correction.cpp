#include "levels/correction.h"

#include "platform/vbformat.h"
#include "shell/state.h"

#include <array>

namespace kw {

namespace {

std::array<CorrTable *, 5> tables{};

enum { LowF = 0, HighF = 1, LowLevel = 2, HighLevel = 3 };

// Linear in frequency and in dB, in single precision. The running total takes the low level first
// and the slope after, each sum rounded to a single: the last bit of a trace point depends on it.
float interpolated(float total, const std::array<float, 4> &seg, float f)
{
    const float r = (f - seg[LowF]) / (seg[HighF] - seg[LowF]);
    const float withlow = total + seg[LowLevel];
    return withlow + (seg[HighLevel] - seg[LowLevel]) * r;
}

}  // namespace

CorrTable *correctiontable(int slot) { return slot >= 0 && slot < 5 ? tables[size_t(slot)] : nullptr; }

void setcorrectiontable(int slot, CorrTable *table)
{
    if (slot >= 0 && slot < 5)
        tables[size_t(slot)] = table;
}

void resetcorrectionsegments()
{
    for (auto &seg : st.corrsegment)
        seg[HighF] = 0.0f;
}

void correctionat(float &frequency)
{
    st.correction = 0.0f;
    const float f = frequency;
    if (st.correctionon == 0 || f < 0)
        return;
    // A-B carries the chain in both of its terms already.
    if (st.vmtrace == 2)
        return;
    // Criteria need a decimal point whatever the locale: Str, trimmed.
    QString text;
    for (size_t slot = 0; slot < 5; ++slot) {
        if (st.devicenr[slot] < 1)
            continue;
        auto &seg = st.corrsegment[slot];
        if (f < seg[HighF]) {
            // Inside the cached segment; the low end is not tested.
            st.correction = interpolated(st.correction, seg, f);
            continue;
        }
        CorrTable *table = tables[slot];
        if (!table)
            continue;
        if (text.isEmpty())
            text = vbTrim(vbStr(f));
        // A field that can't be read keeps what stands in the row passed in, as an assignment
        // passed over leaves its target.
        CorrRow row;
        // Slot b has always written its criterion with two blanks; it finds the same row.
        const QString equal = slot == 1 ? QStringLiteral("frequency  = ") : QStringLiteral("frequency = ");
        if (table->findLast(equal + text, row)) {
            // A point on a row reads the (last) row and leaves the segment as it was.
            st.correction += row.level;
            continue;
        }
        row = {seg[LowF], seg[LowLevel]};
        if (!table->findLast(QStringLiteral("frequency < ") + text, row))
            continue;  // below the first row: 0
        seg[LowF] = row.frequency;
        seg[LowLevel] = row.level;
        row = {seg[HighF], seg[HighLevel]};
        if (!table->findFirst(QStringLiteral("frequency > ") + text, row))
            continue;  // above the last row: 0
        seg[HighF] = row.frequency;
        seg[HighLevel] = row.level;
        st.correction = interpolated(st.correction, seg, f);
    }
}

}  // namespace kw
