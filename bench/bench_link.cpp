// The line's two costs: CPU while waiting for an analyser that does not answer, and the wall
// time of a setting against the time its bytes need on the line.

#include "link/connection.h"
#include "link/transport.h"
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

void wire(const QTemporaryDir &dir, const kt::PtyServer &sim)
{
    setProgramDirectory(dir.path());
    QFile ports(dir.filePath(QStringLiteral("ports.def")));
    ports.open(QIODevice::WriteOnly);
    ports.write(QStringLiteral("Com2=%1\n").arg(sim.devicePath()).toLocal8Bit());
    ports.close();
    reloadComPorts();
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ScriptedDialogs boxes;
    setDialogs(&boxes);
    QTemporaryDir dir;

    {
        kt::Options silent;
        silent.faults.noEcho = true;
        kt::PtyServer sim(silent);
        sim.start();
        wire(dir, sim);
        resetState();
        opencomport();
        st.serialtimeout = 4;
        const double cpu0 = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        const bool got = waitforbyte();
        const double wallSeconds = wall.nsecsElapsed() * 1e-9;
        const double cpu = cpuSeconds() - cpu0;
        std::printf("silent analyser: waited %.2f s (byte: %s), CPU %.4f s = %.2f%% (target < 5%%)\n", wallSeconds,
                    got ? "yes" : "no", cpu, 100.0 * cpu / wallSeconds);
        comm1().setPortOpen(false);
    }
    {
        kt::Options paced;
        paced.pacing = qEnvironmentVariableIsEmpty("NOPACE");
        paced.baud = 19200;
        kt::PtyServer sim(paced);
        sim.start();
        wire(dir, sim);
        resetState();
        connectunit();
        const int runs = 20;
        const QString command = QStringLiteral("#kl10000000");  // 11 characters and the carriage return
        QElapsedTimer wall;
        wall.start();
        for (int i = 0; i < runs; ++i) {
            st.command = command;
            sendcommand();
        }
        const double perCommand = wall.nsecsElapsed() * 1e-9 / runs;
        // Each character out and its echo back, then "RD" and its carriage return: ten bits a byte.
        const double lineTime = (12 * 2 + 3) * 10.0 / 19200;
        std::printf("12-character setting at 19200 baud: %.2f ms, line time %.2f ms, %+.1f%% (target within 10%%)%s\n",
                    perCommand * 1e3, lineTime * 1e3, 100.0 * (perCommand - lineTime) / lineTime,
                    st.serialerror ? " (serial error!)" : "");
        comm1().setPortOpen(false);
    }
    setDialogs(nullptr);
    return 0;
}
