// The report of a finished run of 97,001 rows into a PDF file, read in full and with "Economic"
// thinning, and the preview of it.
#include "bench/measurementbench.h"
#include "plot/report.h"
#include "plot/plotform.h"
#include "plot/plotsources.h"
#include "platform/paintersurface.h"
#include "shell/state.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace kw;

namespace {

void report(const char *what, double ms, double target)
{
    std::printf("%-52s %8.2f ms  (target < %.0f ms)  %s\n", what, ms, target, ms < target ? "ok" : "MISSED");
}

template <typename F>
double milliseconds(int passes, F &&pass)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < passes; ++i)
        pass();
    return double(clock.nsecsElapsed()) / 1e6 / passes;
}

}  // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    resetState();
    QTemporaryDir dir;
    if (qEnvironmentVariableIsSet("KW_BENCH_KEEP"))
        dir.setAutoRemove(false);
    const QString path = dir.filePath(QStringLiteral("big.emc"));
    if (!kwbench::makeMeasurementFile(path, 97001))
        return 1;
    st.measurefile = path;
    st.filemode = 1;
    st.mode = 1;
    st.freqstart = 30.0f;
    st.freqstop = 1000.0f;
    st.span = 970;
    st.grafikmax = -50;
    st.grafikmin = -250;
    st.viewsample = st.viewaverage = st.viewmaxhold = st.viewqpeak = st.viewb = 1;
    st.printcursor = 1;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));

    st.economic = 1;
    report("report to PDF, first, reading the file, \"Economic\"", milliseconds(1, [&] { printReportToPdf(pdf); }), 300);
    report("report to PDF of 97,001 rows, \"Economic\"", milliseconds(5, [&] { printReportToPdf(pdf); }), 300);
    std::printf("  PDF %lld bytes\n", QFileInfo(pdf).size());
    st.economic = 0;
    report("report to PDF of 97,001 rows", milliseconds(3, [&] { printReportToPdf(pdf); }), 1000);
    std::printf("  PDF %lld bytes\n", QFileInfo(pdf).size());

    ImageSurface picture(380, 533);
    previewArea().picture = &picture;
    report("preview of 97,001 rows", milliseconds(5, [] { DrawPreview(); }), 300);
    previewArea() = PreviewArea{};
    return 0;
}
