#include "plot/drawplot.h"

#include "link/connection.h"
#include "plot/cursors.h"
#include "plot/grid.h"
#include "plot/plotform.h"
#include "plot/plotsources.h"
#include "plot/tracescan.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

namespace {

constexpr int kNoScale = 1000;  // grafikmin while no data has given a scale
// Each restart widens the scale past a bound the same limit cannot pass again; this only stops a
// table that changes under the pass.
constexpr int kMostPasses = 8;

// The limit's extent against the scale: dB against plot units, so a limit widens the scale only
// once its value in dB passes the scale's value in plot units. True when the pass must restart.
bool widenScale()
{
    bool restart = false;
    if (st.limitlow < st.grafikmin) {
        st.grafikmin = st.limitlow;
        restart = true;
    }
    if (st.limithigh > st.grafikmax) {
        st.grafikmax = st.limithigh;
        restart = true;
    }
    return restart;
}

void frameAndLimits(PlotForm &form)
{
    for (int pass = 0; pass < kMostPasses; ++pass) {
        st.peaklevel = -1000;
        st.limitlow = 2000;
        st.limithigh = -2000;
        SetPlotScale();
        DistanceCaption();
        DrawFrequencyGrid();
        form.setUnitLabel(vbTrim(st.unit));
        DrawLevelGrid();
        form.picture1().drawWidth = 2;

        if (st.viewlimitmax && st.grafikmin < kNoScale)
            drawLimit(shownLimit(true));
        if (widenScale())
            continue;
        if (!st.viewlimitave || st.grafikmin >= kNoScale)
            return;
        drawLimit(shownLimit(false));
        if (!widenScale())
            return;
    }
}

void scanFileTraces(PlotForm &form)
{
    form.setButtons(false, false, false);
    form.setCaption(QStringLiteral("Measure date: ") + vbGeneralDate(st.dat));
    form.setMemoryLabel(st.mode > 0 ? QStringLiteral("Sweep") : QStringLiteral("Mem B"));
    form.picture1().drawWidth = 1;
    scanMeasurementFile();
}

}  // namespace

LimitLine shownLimit(bool maxHold)
{
    LimitLine limit;
    if (plotSources().limitRows)
        limit.rows = plotSources().limitRows(maxHold);
    limit.searchable = st.filemode == 0;
    limit.colour = maxHold ? 12 : 9;
    limit.logflag = maxHold ? st.lmaxlog : st.lavelog;
    limit.name = maxHold ? st.maxholdname : st.averagename;
    return limit;
}

void scanMeasurementFile()
{
    if (!plotSources().measurementRows)
        return;
    // An empty table still runs its scan: it draws nothing, and counts its 0 rows.
    std::unique_ptr<MeasurementRows> rows = plotSources().measurementRows();
    if (rows)
        scanFile(*rows);
}

std::function<void()> &previewDrawing()
{
    static std::function<void()> drawing;
    return drawing;
}

void DrawPlot()
{
    if (st.drawbusy == 1)
        return;
    PlotForm *form = plotForm();
    if (!form)
        return;
    busypointer();
    st.drawbusy = 1;

    // A pass that fails part-way still ends: what was drawn stays, the flags are cleared.
    try {
        frameAndLimits(*form);
        form->picture1().drawWidth = 1;
        form->setCaption(QString());
        if (st.filemode)
            scanFileTraces(*form);
        else
            scanArrays();
        st.cursorfresh = 1;
        DrawCursors();
    } catch (const std::exception &) {
    }
    form->showPicture();
    if (st.previewopen && previewDrawing())
        previewDrawing()();

    st.drawbusy = 0;
    normalpointer();
}

}  // namespace kw
