// CPU of the program after the analyser vanished under an open port (the adapter pulled, the far
// end of the line gone): idle with RM ticked, and with Auto reading when it went. The main
// window's timers run as in the program, with the program's own time-out; boxes are answered at
// once.

#include "live/cycle.h"
#include "live/timers.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace kw;

namespace {

double cpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

void runEventLoop(int ms)
{
    QTimer::singleShot(ms, Qt::PreciseTimer, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;
    QObject mainWindow;
    startMainTimers(&mainWindow);

    for (const bool autoReading : {false, true}) {
        SimBench bench;
        st.serialtimeout = State{}.serialtimeout;
        if (!bench.connect()) {
            std::fprintf(stderr, "no connection to the simulator\n");
            return 1;
        }
        if (autoReading) {
            autoClicked(true);
            runEventLoop(2500);  // a few reads while the analyser is there
        }
        bench.sim().stop();
        const double cpu0 = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        runEventLoop(seconds * 1000);
        const double wallSeconds = double(wall.nsecsElapsed()) * 1e-9;
        const double cpu = cpuSeconds() - cpu0;
        std::printf("vanished analyser, %s: %.1f s, CPU %.3f s = %.2f%%, %d box(es) (target < 1%%, at most one box)\n",
                    autoReading ? "Auto was reading" : "idle, RM ticked", wallSeconds, cpu, 100.0 * cpu / wallSeconds,
                    bench.boxes().count(QStringLiteral("Serial - Error")));
    }
    return 0;
}
