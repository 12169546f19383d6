// Measurement files: a live trace of 2001 points saved as ".mes", and an ".emc" file of 97,001
// rows loaded up to its first picture (the settings row, the mode, the point range, one DrawPlot
// that reads the whole table).
#include "platform/recordset.h"
#include "plot/drawplot.h"
#include "plot/plotform.h"
#include "shell/state.h"
#include "store/measurementfile.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

using namespace kw;

namespace {

void report(const char *what, double ms, double target)
{
    std::printf("%-60s %8.2f ms  (target < %.0f ms)  %s\n", what, ms, target, ms < target ? "ok" : "MISSED");
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double noise(int i, int k)
{
    const double n = std::sin(i * 12.9898 + k * 78.233) * 43758.5453;
    return n - std::floor(n);
}

// The rows a Sweep + Step run leaves: every point of the sweep, one in fifty marked and stepped.
void fillRun(const QString &path, int rows)
{
    Database file = OpenDatabase(path);
    file.Execute(QStringLiteral("begin"));
    constexpr int kChunk = 400;
    for (int start = 0; start < rows; start += kChunk) {
        QStringList values;
        for (int i = start; i < std::min(rows, start + kChunk); ++i) {
            const bool marked = i % 50 == 0;
            const double sweep = -90 + 10 * noise(i, 0);
            const QString result = marked ? QString::number(sweep + 3 * noise(i, 1), 'f', 2) : QStringLiteral("-1000");
            values << QStringLiteral("(%1,%2,%3,%4,%5,%6,%7,%8)")
                          .arg(30.0 + 970.0 * i / (rows - 1), 0, 'f', 3)
                          .arg(marked ? 1 : 0)
                          .arg(result, result, result)
                          .arg(sweep, 0, 'f', 2)
                          .arg(-100 + 5 * noise(i, 2), 0, 'f', 2)
                          .arg(-100 + 5 * noise(i, 3), 0, 'f', 2);
        }
        file.Execute(QStringLiteral("insert into measurement (Frequency, Sample_dBmW, Average_dBmW, Maxhold_dBmW, "
                                    "QPeak_dBmW, memory_dBmW, Ambient_H_dBmW, Ambient_V_dBmW) values ") +
                     values.join(QLatin1Char(',')));
    }
    file.Execute(QStringLiteral("commit"));
    file.Execute(QStringLiteral("update settings set grafikmin = -300, grafikmax = -100"));  // as the run's end writes it
    file.Close();
}

}  // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    resetState();
    QTemporaryDir dir;
    HeadlessPlot plot(1000, 700);
    setPlotForm(&plot);

    // Saving: creation and the writing of 2001 points, all in one commit.
    st.freqstart = 30.0f;
    st.freqstop = 1030.0f;
    for (int i = 1; i <= 2001; ++i)
        st.sampledata[size_t(i)] = st.averagedata[size_t(i)] = st.maxholddata[size_t(i)] = st.memorydata[size_t(i)] =
            int16_t(-200 + 40 * noise(i, 0));
    std::vector<double> saves, creations;
    for (int run = 0; run < 7; ++run) {
        st.measurefile = dir.filePath(QStringLiteral("live.mes"));
        QElapsedTimer clock;
        clock.start();
        CreateMeasurementFile();
        creations.push_back(double(clock.nsecsElapsed()) / 1e6);
        WriteMeasurementFile();
        saves.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    report("save a .mes of 2001 rows (median of 7)", median(saves), 150);
    std::printf("  of which the creation of the empty file %.2f ms\n", median(creations));

    // Loading: a run's file, each time a file not read before.
    std::vector<double> loads, reads;
    for (int run = 0; run < 3; ++run) {
        const QString path = dir.filePath(QStringLiteral("run%1.emc").arg(run));
        st.measurefile = path;
        st.testname = QStringLiteral("radiated");
        CreateMeasurementFile();
        WriteEmcHeader();
        fillRun(path, 97001);
        st.filemode = 0;
        QElapsedTimer clock;
        clock.start();
        ReadMeasurementFile();
        reads.push_back(double(clock.nsecsElapsed()) / 1e6);
        st.viewmaxhold = st.viewb = st.viewambient = st.viewhorizontal = 1;
        DrawPlot();
        loads.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    report("load an .emc of 97,001 rows up to the first picture (median of 3)", median(loads), 400);
    std::printf("  of which the settings row and the point range %.2f ms\n", median(reads));
    std::printf("pointcount %d, %.3f .. %.3f MHz\n", int(st.pointcount), double(st.freqstart), double(st.freqstop));
    setPlotForm(nullptr);
    return 0;
}
