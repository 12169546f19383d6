#include "plot/plotline.h"

#include "platform/surface.h"
#include "plot/axes.h"
#include "plot/page.h"
#include "shell/state.h"

namespace kw {

bool PlotLine(float f1, int16_t y1, float f2, int16_t y2, uint8_t colour)
{
    Surface *area = plotSurface();
    if (!area || f1 < 0.0f || f2 < 0.0f)
        return false;
    const double x1 = FreqToX(f1);
    // Only the first end knows the left edge of a logarithmic axis at 0 Hz; a second end at 0 Hz
    // falls to the log floor and off the plot.
    const double x2 = st.logaxis && f2 == 0.0f ? -1.0 : FreqToX(f2);
    if (x1 < 0 || x2 < 0)
        return false;
    area->line(x1, y1, x2, y2, ink(colour));
    return true;
}

void PlotStem(float f, int16_t y1, int16_t y2, uint8_t colour)
{
    Surface *area = plotSurface();
    if (!area || f < 0.0f || !(y1 < y2))
        return;
    const double x = FreqToX(f);
    if (x < 0)
        return;
    area->line(x, y1, x, y2, ink(colour));
}

}  // namespace kw
