// CPU of the program after the analyser vanished under an open port (the adapter pulled, the far
// end of the line gone): idle with RM ticked, and with Auto reading when it went. The main
// window's timers run as in the program; boxes are answered at once.

#include "link/connection.h"
#include "link/transport.h"
#include "live/cycle.h"
#include "live/timers.h"
#include "platform/comports.h"
#include "platform/dialogs.h"
#include "platform/progdir.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"
#include "sim/ptyserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
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

void wire(const QTemporaryDir &dir, const kt::PtyServer &sim)
{
    setProgramDirectory(dir.path());
    QFile ports(dir.filePath(QStringLiteral("ports.def")));
    ports.open(QIODevice::WriteOnly);
    ports.write(QStringLiteral("Com2=%1\n").arg(sim.devicePath()).toLocal8Bit());
    ports.close();
    reloadComPorts();
}

// Runs the event loop for the given time after the analyser has gone.
void measure(const char *what, int seconds, const ScriptedDialogs &boxes)
{
    const double cpu0 = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QTimer::singleShot(seconds * 1000, Qt::PreciseTimer, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double wallSeconds = double(wall.nsecsElapsed()) * 1e-9;
    const double cpu = cpuSeconds() - cpu0;
    std::printf("vanished analyser, %s: %.1f s, CPU %.3f s = %.2f%%, %d box(es) (target < 1%%, at most one box)\n",
                what, wallSeconds, cpu, 100.0 * cpu / wallSeconds, boxes.count(QStringLiteral("Serial - Error")));
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, atoi(argv[1])) : 10;
    QTemporaryDir dir;
    QObject mainWindow;
    startMainTimers(&mainWindow);

    for (const bool autoReading : {false, true}) {
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        kt::PtyServer sim;
        if (!sim.start()) {
            std::fprintf(stderr, "simulator: %s\n", qPrintable(sim.error()));
            return 1;
        }
        wire(dir, sim);
        resetState();
        connectunit();
        if (st.portopen != 1) {
            std::fprintf(stderr, "no connection to the simulator\n");
            return 1;
        }
        if (autoReading) {
            autoClicked(true);
            // Let Auto read a few times while the analyser is there.
            QTimer::singleShot(2500, qApp, &QCoreApplication::quit);
            QCoreApplication::exec();
        }
        sim.stop();
        measure(autoReading ? "Auto was reading" : "idle, RM ticked", seconds, boxes);
        comm1().setPortOpen(false);
        setDialogs(nullptr);
    }
    return 0;
}
