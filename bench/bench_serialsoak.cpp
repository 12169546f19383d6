// The link under a thousand serial faults. Each round arms one fault of the analyser (no echo,
// a wrong echo, a block cut short, a wrong checksum, stray bytes, a noise burst, silence after a
// few commands, the cable cut and back) at a random moment of a Read, a Set/Read or a few ticks of
// Auto, then checks what the operator is left with: at most one "Serial - Error" box, the link
// down and RM and Auto unticked after a box, and a connection that works again.
//   bench_serialsoak [faults=1000] [seed]

#include "link/connection.h"
#include "live/cycle.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
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

enum class Action { Read, SetRead, Auto, Count };

struct Tally {
    int faults = 0;
    int noticed = 0;        // the program told the operator (one box)
    int extraBoxes = 0;     // more than one box for one fault
    int blockAfterSettings = 0;  // the settings step told it, then the block read of the same Read
    int leftOpen = 0;       // a box, but the link or a tick stayed up
    int failedReconnect = 0;
    int byKind[int(Fault::Count)] = {};
};

void runAction(Action action)
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
    case Action::Count: break;
    }
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int faults = argc > 1 ? QByteArray(argv[1]).toInt() : 1000;
    QRandomGenerator random(argc > 2 ? QByteArray(argv[2]).toUInt() : 3400u);
    kt::Options clean;
    clean.baud = 115200;
    SimBench bench(clean);
    st.baudrate = 115200;
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
        const auto action = Action(random.bounded(int(Action::Count)));
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
        runAction(action);
        if (arm.joinable())
            arm.join();
        ++tally.faults;
        ++tally.byKind[int(fault)];
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
        if (settingsThenBlock)
            ++tally.blockAfterSettings;
        else if (boxes > 1) {
            ++tally.extraBoxes;
            std::printf("round %d (%s during action %d): %d boxes\n", round, faultName(fault), int(action), boxes);
            for (const kw::ShownBox &b : bench.boxes().shown)
                std::printf("    %s | %s\n", qPrintable(b.title), qPrintable(b.text));
        }
        if (boxes > 0 && (st.portopen != 0 || st.ckrm != 0 || st.ckauto != 0)) {
            ++tally.leftOpen;
            std::printf("round %d (%s): box shown, but portopen %d ckrm %d ckauto %d\n", round, faultName(fault),
                        int(st.portopen), int(st.ckrm), int(st.ckauto));
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
                "reconnections\n",
                tally.faults, wall.elapsed() / 1000.0, tally.noticed, tally.blockAfterSettings, tally.extraBoxes,
                tally.leftOpen, tally.failedReconnect);
    for (int k = 0; k < int(Fault::Count); ++k)
        std::printf("  %-16s %d\n", faultName(Fault(k)), tally.byKind[k]);
    return tally.extraBoxes + tally.leftOpen + tally.failedReconnect == 0 ? 0 : 1;
}
