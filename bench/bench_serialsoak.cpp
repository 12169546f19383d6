// The link under a thousand serial faults. Each round arms one fault of the analyser (no echo,
// a wrong echo, a block cut short, a wrong checksum, stray bytes, a noise burst, silence after a
// few commands, the cable cut and back) at a random moment of a Read, a Set/Read, a few ticks of
// Auto, a Sweep + Step test over two slices or a Step test over three steps, then checks what the
// operator is left with: at most one "Serial - Error" box, the link down and RM and Auto unticked
// after a box, a test run that has ended, and a connection that works again.
//   bench_serialsoak [faults=1000] [seed] [all|live|emc]

#include "emc/passes.h"
#include "emc/rundriver.h"
#include "link/connection.h"
#include "live/cycle.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

using namespace kw;

namespace {

enum class Fault { NoEcho, WrongEcho, CutBlock, BadChecksum, StrayBytes, NoiseBurst, SilentAfter, CableCut, Count };
const char *faultName(Fault f)
{
    static const char *names[] = {"no echo", "wrong echo", "cut block", "bad checksum", "stray bytes",
                                  "noise burst", "silence after N", "cable cut"};
    return names[int(f)];
}

enum class Action { Read, SetRead, Auto, EmcSweep, EmcStep, Count };
const char *actionName(Action a)
{
    static const char *names[] = {"Read", "Set/Read", "Auto", "Sweep + Step", "Step"};
    return names[int(a)];
}

struct Tally {
    int faults = 0;
    int noticed = 0;        // the program told the operator (one box)
    int extraBoxes = 0;     // more than one box for one fault
    int blockAfterSettings = 0;  // the settings step told it, then the block read of the same Read
    int leftOpen = 0;       // a box, but the link or a tick stayed up
    int failedReconnect = 0;
    int runsLeftGoing = 0;  // a test run still stepping after its fault
    // Boxes in a test run with one fault, by count (0, 1, 2, 3 or more). A fault that stays armed
    // fails every command or block of the run that meets it, and each failure tells its own.
    int runBoxes[4] = {};
    int byKind[int(Fault::Count)] = {};
    int byAction[int(Action::Count)] = {};
};

// Two short tests beside the delivered ones: a Sweep + Step over 145-152 MHz and a Step test over
// 30-31 MHz, both a copy of the delivered radiated test, horizontal only.
bool defineTests(SimBench &bench)
{
    const QString db = bench.dir() + QStringLiteral("/default.mdb");
    if (!QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), db))
        return false;
    QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
    st.databasefile = db;
    st.db = OpenDatabase(db);
    st.dbversion = 1.1f;
    for (const auto &[name, mode, start, stop] :
         {std::tuple{"Soak sweep", 0, 145, 152}, std::tuple{"Soak step", 1, 30, 31}}) {
        st.db.Execute(QStringLiteral("insert into test select '%1', config, peak, average, 1, 1, 0, unit, ref, atten, %2, %3, "
                                     "%4, 1, 0, -6, 1, 0, 0 from test where Name = 'CISPR 32 B radiated 3 m'")
                          .arg(QLatin1String(name))
                          .arg(mode)
                          .arg(start)
                          .arg(stop));
    }
    return true;
}

// The test runs to its end: the save dialog gets a file, a Step test is stepped on by Timer2.
// False when the run is still going after far more ticks than its three steps need.
bool runTest(SimBench &bench, const char *test)
{
    st.testname = QLatin1String(test);
    bench.boxes().files.push_back(bench.dir() + QStringLiteral("/soak.emc"));
    emcStart();
    for (int tick = 0; tick < 200 && steppedpending(); ++tick)
        steptick();
    return !steppedpending();
}

bool runAction(SimBench &bench, Action action)
{
    switch (action) {
    case Action::Read: Read(); break;
    case Action::SetRead: SetRead(); break;
    case Action::Auto:
        autoClicked(true);
        for (int tick = 0; tick < 3 && st.ckauto == 1; ++tick)
            timer1Tick();
        autoClicked(false);
        break;
    case Action::EmcSweep: return runTest(bench, "Soak sweep");
    case Action::EmcStep: return runTest(bench, "Soak step");
    case Action::Count: break;
    }
    return true;
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int faults = argc > 1 ? QByteArray(argv[1]).toInt() : 1000;
    QRandomGenerator random(argc > 2 ? QByteArray(argv[2]).toUInt() : 3400u);
    const QByteArray only = argc > 3 ? QByteArray(argv[3]) : QByteArray("all");
    const int firstAction = only == "emc" ? int(Action::EmcSweep) : 0;
    const int endAction = only == "live" ? int(Action::EmcSweep) : int(Action::Count);
    kt::Options clean;
    clean.baud = 115200;
    SimBench bench(clean);
    st.baudrate = 115200;
    if (!defineTests(bench)) {
        std::printf("KW_DEFAULT_MDB must name the delivered default.mdb\n");
        return 1;
    }
    Tally tally;
    QElapsedTimer wall;
    wall.start();

    for (int round = 0; round < faults; ++round) {
        if (!bench.connect()) {
            ++tally.failedReconnect;
            bench.restart(clean);
            if (!bench.connect()) {
                std::printf("round %d: the analyser cannot be reached at all\n", round);
                return 1;
            }
        }
        const auto fault = Fault(random.bounded(int(Fault::Count)));
        const auto action = Action(random.bounded(firstAction, endAction));
        const int delayMs = int(random.bounded(60));
        std::thread arm;
        const auto armLater = [&](std::function<void()> f) {
            arm = std::thread([delayMs, f = std::move(f)] {
                std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
                f();
            });
        };
        kt::PtyServer &sim = bench.sim();
        const auto setFaults = [&sim](const std::function<void(kt::Faults &)> &f) {
            sim.withModel([&f](kt::Analyser &a) { f(a.options().faults); });
        };
        switch (fault) {
        case Fault::NoEcho: armLater([=] { setFaults([](kt::Faults &x) { x.noEcho = true; }); }); break;
        case Fault::WrongEcho: armLater([=] { setFaults([](kt::Faults &x) { x.wrongEchoes = 1; }); }); break;
        case Fault::CutBlock: {
            const int cut = int(random.bounded(2048));
            setFaults([cut](kt::Faults &x) { x.blockCutAt = cut; });
            break;
        }
        case Fault::BadChecksum: setFaults([](kt::Faults &x) { x.wrongChecksum = true; }); break;
        case Fault::StrayBytes: setFaults([](kt::Faults &x) { x.noise = QByteArray("\x07#x", 3); }); break;
        case Fault::NoiseBurst: {
            QByteArray burst(int(random.bounded(1, 64)), '\0');
            for (char &c : burst)
                c = char(random.bounded(256));
            armLater([&sim, burst] { sim.inject(burst); });
            break;
        }
        case Fault::SilentAfter: {
            const int after = int(random.bounded(12));
            setFaults([after](kt::Faults &x) { x.silentAfter = after; });
            break;
        }
        case Fault::CableCut: armLater([&sim] { sim.unplug(); }); break;
        case Fault::Count: break;
        }

        bench.boxes().shown.clear();
        const bool ended = runAction(bench, action);
        if (arm.joinable())
            arm.join();
        ++tally.faults;
        ++tally.byKind[int(fault)];
        ++tally.byAction[int(action)];
        if (!ended) {
            ++tally.runsLeftGoing;
            std::printf("round %d (%s during %s): the run still steps\n", round, faultName(fault), actionName(action));
            emcStop();
            while (steppedpending())
                steptick();
        }
        const int boxes = bench.boxes().count(QStringLiteral("Serial - Error"));
        if (boxes > 0)
            ++tally.noticed;
        // readtraces starts with a clear error flag, so a Read whose settings step failed tells the
        // failed block once more: that second box is the read sequence's own, not a second telling
        // of one failure.
        const auto &shown = bench.boxes().shown;
        const bool settingsThenBlock = boxes == 2 && shown.size() == 2 &&
                                       !shown[0].text.contains(QStringLiteral("#bm1")) &&
                                       shown[1].text == QStringLiteral(" Sample read error (#bm1)");
        const bool testRun = action == Action::EmcSweep || action == Action::EmcStep;
        if (testRun && ++tally.runBoxes[std::min(boxes, 3)] <= 3 && boxes > 1) {
            std::printf("round %d (%s during %s): %d boxes, as the first of their kind\n", round, faultName(fault),
                        actionName(action), boxes);
            for (const kw::ShownBox &b : bench.boxes().shown)
                if (b.title == QLatin1String("Serial - Error"))
                    std::printf("    %s\n", qPrintable(b.text));
        }
        if (settingsThenBlock)
            ++tally.blockAfterSettings;
        else if (boxes > 1 && !testRun) {
            ++tally.extraBoxes;
            std::printf("round %d (%s during %s): %d boxes\n", round, faultName(fault), actionName(action), boxes);
            for (const kw::ShownBox &b : bench.boxes().shown)
                std::printf("    %s | %s\n", qPrintable(b.title), qPrintable(b.text));
        }
        if (boxes > 0 && (st.portopen != 0 || st.ckrm != 0 || st.ckauto != 0)) {
            ++tally.leftOpen;
            std::printf("round %d (%s during %s): box shown, but portopen %d ckrm %d ckauto %d\n", round, faultName(fault),
                        actionName(action), int(st.portopen), int(st.ckrm), int(st.ckauto));
        }
        // The fault goes; the operator connects again (RM), and it works.
        if (st.portopen == 1)
            disconnectunit();
        bench.restart(clean);
        if (!bench.connect()) {
            ++tally.failedReconnect;
            std::printf("round %d (%s): no connection after the fault\n", round, faultName(fault));
        }
        disconnectunit();
    }

    std::printf("bench_serialsoak: %d faults in %.0f s: 0 crashes, %d told by a box (%d of them by the settings "
                "step and the block read of one Read), %d extra boxes, %d boxes with the link left up, %d failed "
                "reconnections, %d test runs left stepping\n",
                tally.faults, wall.elapsed() / 1000.0, tally.noticed, tally.blockAfterSettings, tally.extraBoxes,
                tally.leftOpen, tally.failedReconnect, tally.runsLeftGoing);
    for (int k = 0; k < int(Fault::Count); ++k)
        std::printf("  %-16s %d\n", faultName(Fault(k)), tally.byKind[k]);
    for (int a = 0; a < int(Action::Count); ++a)
        std::printf("  %-16s %d\n", actionName(Action(a)), tally.byAction[a]);
    std::printf("  test runs by boxes shown: 0: %d, 1: %d, 2: %d, 3 or more: %d\n", tally.runBoxes[0], tally.runBoxes[1],
                tally.runBoxes[2], tally.runBoxes[3]);
    st.db.Close();
    return tally.extraBoxes + tally.leftOpen + tally.failedReconnect + tally.runsLeftGoing == 0 ? 0 : 1;
}
