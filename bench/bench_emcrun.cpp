// A whole Sweep + Step run of 30-230 MHz (40 slices, meastime 1 s) against the simulator pacing
// its line at 115200 baud: the wall time against the dwell and the line time it cannot avoid.

#include "emc/emchooks.h"
#include "emc/rundriver.h"
#include "platform/clock.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <cstdio>

using namespace kw;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    kt::Options options;
    options.baud = 115200;
    options.pacing = true;
    SimBench bench(options);
    setTimerSource({});  // the dwell runs on the real clock here
    st.baudrate = 115200;
    const QString db = bench.dir() + QStringLiteral("/default.mdb");
    if (!QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), db)) {
        std::printf("KW_DEFAULT_MDB must name the delivered default.mdb\n");
        return 1;
    }
    QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
    st.databasefile = db;
    st.db = OpenDatabase(db);
    st.dbversion = 1.1f;
    st.db.Execute(QStringLiteral("insert into test select 'Bench', config, peak, average, 1, 1, 0, unit, ref, atten, 0, 30, 230, 1, "
                                 "0, 6, 1, 0, 0 from test where Name = 'CISPR 32 B radiated 3 m'"));
    st.testname = QStringLiteral("Bench");
    const QString file = bench.dir() + QStringLiteral("/bench.emc");
    bench.boxes().files.push_back(file);
    if (!bench.connect())
        return 1;

    int slices = 0;
    int steps = 0;
    emcHooks().rowWritten = [&](const char *what, double) { steps += QByteArray(what) == "marked"; };
    emcHooks().frequencyShown = [&](const QString &) { ++slices; };
    QElapsedTimer wall;
    wall.start();
    emcStart();
    const double seconds = wall.nsecsElapsed() / 1e9;

    // What the line must carry: every command and its echo, the confirmations, the blocks.
    qint64 bytes = 0;
    for (const QString &command : bench.log()) {
        bytes += 2 * (command.size() + 1) + 4;
        if (command == QLatin1String("#bm1") || command.startsWith(QLatin1String("#ss")))
            bytes += 2048;
    }
    const double line = bytes * 10.0 / 115200.0;
    // Each slice dwells meastime; a step costs only its line time.
    const double dwell = 40 * 1.0;
    std::printf("Sweep + Step 30-230 MHz, 40 slices, %d marked rows: wall %.1f s, dwell %.1f s + line %.1f s = %.1f s, "
                "%+.1f %% (target within 5 %%)\n",
                steps, seconds, dwell, line, dwell + line, (seconds / (dwell + line) - 1) * 100);
    st.db.Close();
    return 0;
}
