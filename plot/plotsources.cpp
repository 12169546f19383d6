#include "plot/plotsources.h"

namespace kw {

namespace {
PlotSources defaults() { return PlotSources{}; }
}  // namespace

PlotSources &plotSources()
{
    static PlotSources sources = defaults();
    return sources;
}

void resetPlotSources() { plotSources() = defaults(); }

}  // namespace kw
