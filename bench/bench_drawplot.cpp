// DrawPlot on a 1000 x 700 plot: four live traces of 2001 points, and a measurement file of
// 97,001 rows read in full and with "Economic" thinning.
#include "bench/measurementbench.h"
#include "plot/drawplot.h"
#include "plot/plotform.h"
#include "plot/plotsources.h"
#include "shell/state.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cmath>
#include <cstdio>

using namespace kw;
using kwbench::level;
using kwbench::makeMeasurementFile;

namespace {

double millisecondsPerPass(int passes)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < passes; ++i)
        DrawPlot();
    return double(clock.nsecsElapsed()) / 1e6 / passes;
}

void report(const char *what, double ms, double target)
{
    std::printf("%-52s %8.2f ms  (target < %.0f ms)  %s\n", what, ms, target, ms < target ? "ok" : "MISSED");
}

}  // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    resetState();
    HeadlessPlot plot(1000, 700);
    setPlotForm(&plot);

    // Live: all four traces shown.
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
    DrawPlot();
    report("DrawPlot, four live traces of 2001 points", millisecondsPerPass(50), 20);

    // A measurement file of 97,001 rows.
    QTemporaryDir dir;
    if (qEnvironmentVariableIsSet("KW_BENCH_KEEP"))
        dir.setAutoRemove(false);
    const QString path = dir.filePath(QStringLiteral("big.mes"));
    const int rows = 97001;
    if (!makeMeasurementFile(path, rows))
        return 1;
    st.measurefile = path;
    st.filemode = 1;
    st.mode = 0;
    st.viewqpeak = 1;
    st.freqstart = 30.0f;
    st.freqstop = 1000.0f;
    st.economic = 1;
    // The first pass reads the file; later passes of the unchanged file only draw.
    report("first DrawPlot of the file, \"Economic\", reading it", millisecondsPerPass(1), 300);
    report("DrawPlot, the same file with \"Economic\"", millisecondsPerPass(5), 100);
    st.economic = 0;
    report("DrawPlot, measurement file of 97,001 rows", millisecondsPerPass(5), 300);
    std::printf("economicstep %d\n", int(st.economicstep));
    setPlotForm(nullptr);
    return 0;
}
