#include "plot/grid.h"

#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/page.h"
#include "plot/plotform.h"
#include "plot/plotline.h"
#include "shell/state.h"

#include <cmath>

namespace kw {

namespace {

constexpr uint8_t kGridColour = 7;
constexpr uint8_t kDecadeColour = 8;
constexpr uint8_t kLabelColour = 5;
constexpr uint8_t kZeroHzColour = 0;
constexpr double kMostGridLines = 100000.0;

void gridLine(float frequency, uint8_t colour)
{
    PlotLine(frequency, st.grafikmin, frequency, st.grafikmax, axisColour(colour));
}

void zeroSpanAxis()
{
    Surface *strip = currentPage();
    if (strip) {
        strip->currentY = st.grafikmin;
    } else {
        PlotForm *form = plotForm();
        if (!form)
            return;
        strip = &form->picture3();
        strip->currentY = 10;
    }
    strip->foreColour = axisColour(kLabelColour);
    strip->currentX = 1000;
    strip->print(zeroSpanText(st.freqstart));
}

void logarithmicAxis()
{
    ComputeDecades();
    float s = st.decadestep;
    int k0 = int(std::trunc(st.decadelow / st.decadestep));
    FreqTick(st.decadelow, kLabelColour);
    float f = 0.0f;
    // Each decade has its digit lines 2..9 light and its power of ten dark with a label; the
    // first decade starts at the digit of the left edge.
    for (int decades = 0; decades < 64; ++decades) {
        for (int k = k0; k <= 9; ++k) {
            f = s * float(k);
            if (f < st.decadehigh)
                gridLine(f, kGridColour);
        }
        s *= 10.0f;
        if (s < st.decadehigh) {
            gridLine(s, kDecadeColour);
            FreqTick(s, kLabelColour);
        }
        k0 = 2;
        if (!(f < st.decadehigh))
            break;
    }
    FreqTick(st.decadehigh, kLabelColour);
}

void linearAxis(Surface &area)
{
    if (st.freqstart < 0.0f) {
        // The plot reaches below 0 Hz: a thick line marks 0 Hz and there is no left label.
        area.drawWidth = 2;
        gridLine(0.0f, kZeroHzColour);
        area.drawWidth = 1;
    } else {
        FreqTick(st.freqstart, kLabelColour);
    }
    for (int i = 1; i <= 9; ++i) {
        const float f = st.freqstart + (st.freqstop - st.freqstart) * float(i) / 10.0f;
        gridLine(f, kGridColour);
        FreqTick(f, kLabelColour);
    }
    FreqTick(st.freqstop, kLabelColour);
}

void levelLine(Surface &area, float y)
{
    area.line(0, y, kPlotWidth, y, axisColour(kGridColour));
    LevelTick(y, kLabelColour);
}

}  // namespace

void SetPlotScale()
{
    PlotForm *form = plotForm();
    if (!form)
        return;
    Surface &p1 = form->picture1();
    Surface &p2 = form->picture2();
    Surface &p3 = form->picture3();
    const double height = double(st.grafikmin) - double(st.grafikmax);
    p1.setScaleTop(st.grafikmax);
    p1.setScaleHeight(height);
    p2.setScaleTop(st.grafikmax);
    p2.setScaleHeight(p1.deviceHeight() > 0 ? p2.deviceHeight() / p1.deviceHeight() * height : height);
    p1.clear();
    p3.clear();
    p2.clear();
    p1.drawWidth = 1;
    // Under a decade there is no logarithmic view, and the choice is forgotten, not suspended.
    if (st.freqstart * 10.0f <= st.freqstop) {
        form->setLogBox(true, st.logaxis != 0);
    } else {
        st.logaxis = 0;
        form->setLogBox(false, false);
    }
    p1.drawWidth = 1;
}

void FreqTick(float frequency, uint8_t colour)
{
    if (frequency < 0.0f)
        return;
    if (Surface *page = currentPage()) {
        // On a page the label stands under the plot, without a tick.
        const double x = FreqToX(frequency);
        if (x < 0)
            return;
        page->foreColour = axisColour(colour);
        page->currentY = onPaper() ? st.grafikmin - 1 : st.grafikmin;
        page->currentX = x;
        page->print(FormatFrequency(frequency));
        return;
    }
    PlotForm *form = plotForm();
    if (!form)
        return;
    const double x = FreqToX(frequency);
    if (x < 0)
        return;
    Surface &p3 = form->picture3();
    p3.line(x, 10, x, 7, colour);
    p3.foreColour = colour;
    p3.currentY = 8;
    p3.currentX = x;
    p3.print(FormatFrequency(frequency));
}

void LevelTick(float y, uint8_t colour)
{
    if (Surface *page = currentPage()) {
        // Left of the plot on a page, without a tick.
        page->foreColour = axisColour(colour);
        page->currentY = y;
        page->currentX = -(kPlotWidth / 15);
        page->print(vbFormat(double(y) / 2.5 + double(st.unitoffset), QStringLiteral("###0.0")));
        return;
    }
    PlotForm *form = plotForm();
    if (!form)
        return;
    Surface &p2 = form->picture2();
    p2.line(8, y, 10, y, colour);
    p2.foreColour = colour;
    p2.currentY = y;
    p2.currentX = 0;
    p2.print(vbFormat(double(y) / 2.5 + double(st.unitoffset), QStringLiteral("###0.0")));
}

void DistanceCaption()
{
    PlotForm *form = plotForm();
    if (!form)
        return;
    if (st.correctionon != 1 || !(st.configdist > 0.0f)) {
        form->setDistanceLabel(false, QString());
        return;
    }
    QString text = QStringLiteral("Distance from DUT: ") + vbStr(st.configdist);
    if (st.lmaxdist != st.configdist && st.lmaxdist > 0.0f) {
        const double offset = -20.0 * std::log10(double(st.lmaxdist) / double(st.configdist));
        text += QStringLiteral("m offset ") + vbFormat(offset, QStringLiteral("0.0")) + QStringLiteral("dB");
    } else {
        text += QStringLiteral("m");
    }
    form->setDistanceLabel(true, text);
}

void DrawFrequencyGrid()
{
    Surface *area = plotSurface();
    if (!area)
        return;
    switch (frequencyAxis()) {
    case FreqAxis::ZeroSpan: zeroSpanAxis(); break;
    case FreqAxis::Logarithmic: logarithmicAxis(); break;
    case FreqAxis::Linear: linearAxis(*area); break;
    }
}

void DrawLevelGrid()
{
    Surface *area = plotSurface();
    if (!area)
        return;
    Surface &p1 = *area;
    const float r = float((double(st.reflevel) + double(st.attenuator)) * 2.5);
    const float step = float(2.5 * st.dbperdiv);
    if (!(step > 0.0f) || !std::isfinite(r))
        return;
    const float top = st.grafikmax;
    const float bottom = st.grafikmin;
    // A reference level from a garbled reply or file can lie so far off the plot that the float
    // counter would no longer move, or would take ages to arrive: such a grid is not drawn.
    auto reachable = [step](float from, float to) {
        return std::abs(double(to) - double(from)) / double(step) < kMostGridLines && from + step != from &&
               to + step != to;
    };
    if (r > top) {
        // The reference line lies above the plot: the grid hangs from the top edge.
        if (!reachable(top, bottom))
            return;
        for (float y = top; y >= bottom; y -= step)
            if (r > y)
                levelLine(p1, y);
        return;
    }
    // Otherwise the reference line is a grid line and the grid runs both ways from it.
    if (!reachable(r, top) || !reachable(r, bottom))
        return;
    for (float y = r; y <= top; y += step)
        levelLine(p1, y);
    for (float y = r - step; y >= bottom; y -= step)
        levelLine(p1, y);
}

}  // namespace kw
