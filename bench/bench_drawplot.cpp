// DrawPlot on a 1000 x 700 plot: four live traces of 2001 points, and a measurement file of
// 97,001 rows read in full and with "Economic" thinning.
#include "bench/livetraces.h"
#include "platform/recordset.h"
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

using kwbench::level;

bool makeMeasurementFile(const QString &path, int rows)
{
    try {
        Database file = CreateDatabase(path);
        TableDef table{QStringLiteral("Measurement"), {}};
        for (const char *name : {"Frequency", "Sample_dBmW", "Average_dBmW", "Maxhold_dBmW", "QPeak_dBmW",
                                 "memory_dBmW", "Ambient_H_dBmW", "Ambient_V_dBmW", "H_Average_dBmW",
                                 "H_Maxhold_dBmW", "H_QPeak_dBmW", "V_Average_dBmW", "V_Maxhold_dBmW",
                                 "V_QPeak_dBmW"})
            table.fields.push_back({QString::fromLatin1(name), FieldType::Single, 0});
        file.AppendTable(table);
        file.Execute(QStringLiteral("begin"));
        constexpr int kChunk = 400;
        for (int start = 0; start < rows; start += kChunk) {
            QStringList values;
            for (int i = start; i < std::min(rows, start + kChunk); ++i) {
                const double f = 30.0 + 970.0 * i / (rows - 1);
                values << QStringLiteral("(%1,%2,%3,%4,%5,%6)")
                              .arg(f, 0, 'f', 3)
                              .arg(level(i, 0) / 2.5)
                              .arg(level(i, 1) / 2.5)
                              .arg(level(i, 2) / 2.5)
                              .arg(0)
                              .arg(level(i, 3) / 2.5);
            }
            file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW, Average_dBmW, "
                                        "Maxhold_dBmW, QPeak_dBmW, memory_dBmW) values ") +
                         values.join(QLatin1Char(',')));
        }
        file.Execute(QStringLiteral("commit"));
        file.Close();
        return true;
    } catch (const std::exception &e) {
        std::printf("could not build the measurement file: %s\n", e.what());
        return false;
    }
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
    kwbench::showFourLiveTraces();
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
