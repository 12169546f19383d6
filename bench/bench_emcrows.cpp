// The database work of an EMC run on files of a real test's size: one step's row (new and edited)
// and a marked row as the row count grows to 97,001, a sweep slice's merge, the flagging of all
// rows; and the processor while a slice dwells.

#include "emc/merge.h"
#include "emc/passes.h"
#include "platform/recordset.h"
#include "platform/screen.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "store/runfile.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <ctime>

using namespace kw;

namespace {

double cpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return t.tv_sec + t.tv_nsec * 1e-9;
}

// A file whose measurement table holds n rows on the 10 kHz grid from 30 MHz, every 50th marked,
// and the class B radiated limit.
void makeFile(const QString &path, int n)
{
    st.measurefile = path;
    CreateMeasurementFile();
    Database f = OpenDatabase(path);
    f.Execute(QStringLiteral(
                  "insert into measurement (Frequency, Memory_dBmW, sample_dBmW, Maxhold_dBmW, Average_dBmW, qpeak_dBmW, "
                  "ambient_h_dBmW, ambient_v_dBmW) with recursive c(i) as (select 0 union all select i + 1 from c where i < %1) "
                  "select round(30 + i * 0.01, 3), -70 + (i % 17), case when i % 50 = 0 then 1 else 0 end, -1000, -1000, -1000, "
                  "-1000, -1000 from c")
                  .arg(n - 1));
    f.Execute(QStringLiteral("insert into limitlines (maxfreq, Maxhold_dBmW) values (30, -67), (230, -67), (230, -60), (1000, -60)"));
    f.Close();
}

void fillBlock()
{
    for (int i = 1; i <= 2001; ++i)
        st.rawblock[size_t(i)] = int16_t(120 + (i * 7) % 60);
}

double msPerCall(int calls, const std::function<void(int)> &call)
{
    QElapsedTimer t;
    t.start();
    for (int i = 0; i < calls; ++i)
        call(i);
    return t.nsecsElapsed() / 1e6 / calls;
}

struct SliceTimes {
    double wall = 0;
    double cpu = 0;
    double checkpoint = 0;
};

// Ten slices merged from `from` MHz on, each after the copy of the log that the run makes while
// the slice dwells; milliseconds a slice.
SliceTimes mergeSlices(int from)
{
    SliceTimes times;
    QElapsedTimer t;
    for (int i = 0; i < 10; ++i) {
        t.start();
        checkpointrunfile();
        times.checkpoint += t.nsecsElapsed() / 1e6 / 10;
        st.freqstart = float(from + 5 * i);
        st.freqstop = st.freqstart + 5.0f;
        st.doneupto = st.freqstart;
        st.nextrowfreq = st.freqstart;
        const double cpu0 = cpuSeconds();
        t.start();
        sweepmerge();
        times.wall += t.nsecsElapsed() / 1e6 / 10;
        times.cpu += (cpuSeconds() - cpu0) * 1000.0 / 10;
    }
    return times;
}

}  // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    resetState();
    st.detaverage = 1;
    st.detqpeak = 1;
    st.reflevel = -30.0f;
    st.attenuator = 10.0f;
    fillBlock();

    std::printf("rows     run's hold and index   stepresultrow new / edited   markedresultrow\n");
    for (int n : {1000, 10000, 97001}) {
        const QString path = dir.filePath(QStringLiteral("rows%1.emc").arg(n));
        makeFile(path, n);
        // Taken by the run's first row; the steps after it find the file held and indexed.
        const double held = msPerCall(1, [](int) { holdrunfile(); });
        // A first pass adds rows past the end of the band; a second pass edits existing ones.
        st.secondpass = 0;
        const double added = msPerCall(100, [](int i) {
            st.centerfreq = float(1000.01 + i * 0.01);
            stepresultrow();
        });
        st.secondpass = 1;
        const double edited = msPerCall(100, [n](int i) {
            st.centerfreq = float(30.0 + ((i * 97) % n) * 0.01);
            stepresultrow();
        });
        st.measdb = OpenDatabase(path);
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from measurement where sample_dBmW = 1 order by frequency"));
        const int marked = std::min(100, st.rs2.RecordCount());
        const double remeasured = msPerCall(marked, [](int) {
            markedresultrow();
            st.rs2.MoveNext();
        });
        st.rs2.Close();
        st.measdb.Close();
        std::printf("%6d   %8.1f ms               %8.2f / %6.2f ms        %6.2f ms   (target < 5 ms)\n", n, held, added, edited,
                    remeasured);
    }

    // A slice merged onto the grid of a file that already holds the band, and the flagging.
    const QString path = dir.filePath(QStringLiteral("rows97001.emc"));
    st.measurefile = path;
    st.pointcount = 2001;
    st.stepsize = 0.01;
    st.runstop = 2000.0f;
    st.limitmark = 100000.0f;
    st.secondpass = 1;
    st.ambientphase = 0;
    for (int i = 1; i <= 2001; ++i)
        st.maxholddata[size_t(i)] = int16_t(-150 + i % 40);
    const SliceTimes edited = mergeSlices(500);
    std::printf("sweepmerge, second pass, 500 rows a slice of 97,001: %.1f ms, CPU %.1f ms (target < 20 ms); "
                "the log copied in the dwell before it: %.1f ms\n",
                edited.wall, edited.cpu, edited.checkpoint);
    st.secondpass = 0;
    const SliceTimes created = mergeSlices(1100);
    std::printf("sweepmerge, first pass, 500 new rows a slice: %.1f ms, CPU %.1f ms (target < 20 ms); "
                "the log copied in the dwell before it: %.1f ms\n",
                created.wall, created.cpu, created.checkpoint);

    QElapsedTimer t;
    st.leveldist = 0.0f;
    st.limitbezug = 0;
    t.start();
    flagrows();
    std::printf("flagrows over 102,001 rows, first marks: %.2f s (target < 5 s)\n", t.nsecsElapsed() / 1e9);
    t.restart();
    flagrows();
    std::printf("flagrows again, marks unchanged: %.2f s\n", t.nsecsElapsed() / 1e9);

    // The processor while a slice dwells: the wait sleeps between its looks at the clock.
    const double cpu0 = cpuSeconds();
    t.restart();
    while (t.elapsed() < 3000)
        waitEvents(20);
    std::printf("CPU while a slice dwells 3 s: %.2f %% of a core (target < 2 %%)\n", (cpuSeconds() - cpu0) / 3.0 * 100.0);
    return 0;
}
