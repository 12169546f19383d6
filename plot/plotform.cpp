#include "plot/plotform.h"

#include "plot/axes.h"

namespace kw {

namespace {
PlotForm *current = nullptr;
// grafik's strips at the default plot size: 40 px of level labels, 27 px of frequency labels,
// and the frequency strip 73 px longer than the plot.
constexpr int kLevelStripWidth = 40;
constexpr int kFreqStripHeight = 27;
constexpr int kFreqStripOverrun = 73;
}  // namespace

PlotForm *plotForm() { return current; }
void setPlotForm(PlotForm *form) { current = form; }

HeadlessPlot::HeadlessPlot(int plotWidth, int plotHeight)
    : p1(plotWidth, plotHeight),
      p2(kLevelStripWidth, plotHeight + kFreqStripHeight),
      p3(plotWidth + kFreqStripOverrun, kFreqStripHeight)
{
    setHorizontalScales(*this);
}

void setHorizontalScales(PlotForm &form)
{
    Surface &p1 = form.picture1();
    Surface &p3 = form.picture3();
    p1.setScaleLeft(0);
    p1.setScaleWidth(kPlotWidth);
    form.picture2().setScaleLeft(0);
    form.picture2().setScaleWidth(10);
    p3.setScaleLeft(0);
    p3.setScaleWidth(p1.deviceWidth() > 0 ? p3.deviceWidth() / p1.deviceWidth() * kPlotWidth : kPlotWidth);
    p3.setScaleTop(10);
    p3.setScaleHeight(-11);
}

}  // namespace kw
