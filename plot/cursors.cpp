#include "plot/cursors.h"

#include "levels/levelmath.h"
#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/plotform.h"
#include "shell/state.h"

#include <cmath>

namespace kw {

namespace {

constexpr int kCursor1Colour = 5;  // magenta, dashed
constexpr int kCursor2Colour = 2;  // green, dotted
const QString kNoLevel = QStringLiteral("---");
const QString kLevelFormat = QStringLiteral("###0.0");

CursorReadouts readouts;

template <typename T>
T clamped(T v, T low, T high)
{
    // Below the bottom first: before any data the bottom lies above the top, and the bottom wins.
    if (v < low)
        return low;
    if (v > high)
        return high;
    return v;
}

void crosshair(Surface &p1, int32_t x, int32_t y, int colour)
{
    p1.line(x, st.grafikmin, x, st.grafikmax, colour);
    p1.line(0, y, kPlotWidth, y, colour);
}

// The lines of the last call are taken away by drawing them once more, then the new ones drawn.
// After a full pass (cursorfresh) the old lines are gone already: drawing them again in the
// inverting mode would bring them back.
void moveCrosshairs(Surface &p1)
{
    const bool fresh = st.cursorfresh == 1;
    st.cursorfresh = 0;
    if (!fresh)
        crosshair(p1, st.cursor1oldx, st.cursor1oldy, kCursor1Colour);
    crosshair(p1, st.cursor1x, st.cursor1y, kCursor1Colour);
    p1.drawStyle = kStyleDot;
    if (!fresh)
        crosshair(p1, st.cursor2oldx, st.cursor2oldy, kCursor2Colour);
    crosshair(p1, st.cursor2x, st.cursor2y, kCursor2Colour);
    p1.drawStyle = kStyleDash;
}

}  // namespace

const CursorReadouts &cursorReadouts() { return readouts; }

float cursorFrequency(int32_t x)
{
    const bool liveZeroSpan = !(st.mode > 0 || st.span != 0);
    double f = 0.0;
    if (st.logaxis && !liveZeroSpan) {
        const double a = log10floor(double(st.decadelow) * 1000.0);
        const double b = log10floor(double(st.decadehigh) * 1000.0);
        f = std::pow(10.0, (b - a) * x / kPlotWidth + a) / 1000.0;
    } else if (st.mode > 0 || st.span >= 1) {
        f = double(st.freqstop - st.freqstart) * x / kPlotWidth + double(st.freqstart);
    } else {
        f = st.freqstart;
    }
    const float result = float(f);
    return result < 0.0f ? 0.0f : result;
}

QString cursor2FrequencyText(float frequency2, float frequency1)
{
    if (frequency2 < 1.0f)
        return vbFormat(frequency2 * 1000.0f, QStringLiteral("###0.0K"));
    if (frequency1 < 1000.0f)
        return vbFormat(frequency2, QStringLiteral("###0.00M"));
    return vbFormat(frequency2 / 1000.0f, QStringLiteral("###0.000G"));
}

void DrawCursors()
{
    st.cursor1x = clamped<int32_t>(st.cursor1x, 0, int32_t(kPlotWidth));
    st.cursor2x = clamped<int32_t>(st.cursor2x, 0, int32_t(kPlotWidth));
    st.cursor1y = clamped<int32_t>(st.cursor1y, st.grafikmin, st.grafikmax);
    st.cursor2y = clamped<int32_t>(st.cursor2y, st.grafikmin, st.grafikmax);

    PlotForm *form = plotForm();
    if (form) {
        Surface &p1 = form->picture1();
        const int mode = p1.drawMode;
        p1.drawMode = kModeNotXorPen;
        p1.drawWidth = 1;
        p1.drawStyle = kStyleDash;
        moveCrosshairs(p1);
        p1.drawMode = mode;
        p1.drawWidth = 1;
        p1.drawStyle = kStyleSolid;
    } else {
        st.cursorfresh = 0;
    }
    st.cursor1oldx = st.cursor1x;
    st.cursor1oldy = st.cursor1y;
    st.cursor2oldx = st.cursor2x;
    st.cursor2oldy = st.cursor2y;

    // Levels exist only once a pass has given the plot a scale with its bottom below its top.
    const bool scaled = st.grafikmin < st.grafikmax;
    st.cursor1freq = cursorFrequency(st.cursor1x);
    const float frequency2 = cursorFrequency(st.cursor2x);
    readouts.freqa = FormatFrequency(st.cursor1freq);
    readouts.freqb = cursor2FrequencyText(frequency2, st.cursor1freq);
    readouts.freqab = FormatFrequency(std::abs(frequency2 - st.cursor1freq));
    if (scaled) {
        st.cursor1level = float(st.cursor1y / 2.5 + double(st.unitoffset));
        const float level2 = float(st.cursor2y / 2.5 + double(st.unitoffset));
        readouts.leva = vbFormat(st.cursor1level, kLevelFormat);
        readouts.levb = vbFormat(level2, kLevelFormat);
        readouts.levab = vbFormat(st.cursor1level - level2, kLevelFormat);
    } else {
        readouts.leva = readouts.levb = readouts.levab = kNoLevel;
    }
    if (form)
        form->showCursors(readouts);
}

}  // namespace kw
