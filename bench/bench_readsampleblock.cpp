// readsampleblock against the simulator pacing its bytes at 19200 baud: the wall time of the
// routine against the time its bytes need on the line (every character sent is echoed; the
// replies and the 2048-byte block follow one byte time after another).

#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "platform/clock.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace kw;

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    kt::Options paced;
    paced.pacing = true;
    paced.baud = 19200;
    SimBench bench(paced);
    setTimerSource({});  // the real clock: this is about time
    st.serialtimeout = 4;
    connectunit();
    if (st.portopen != 1) {
        std::printf("no analyser on the simulated line\n");
        return 1;
    }
    // The two queries ahead of the block, for their reply lengths.
    queryreflevel();
    const int rlReply = int(st.reply.size()) + 1;
    queryattenuator();
    const int atReply = int(st.reply.size()) + 1;
    const int sentChars = 4 + 4 + 5;  // "#rl", "#at", "#bm1", each with its carriage return
    const int lineBytes = 2 * sentChars + rlReply + atReply + 2048;
    const double lineSeconds = lineBytes * 10.0 / 19200.0;

    const int runs = 5;
    std::vector<double> walls;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer wall;
        wall.start();
        readsampleblock();
        walls.push_back(wall.nsecsElapsed() * 1e-9);
        if (st.serialerror) {
            std::printf("the read failed: %s\n", qPrintable(st.serialerrortext));
            return 1;
        }
    }
    std::sort(walls.begin(), walls.end());
    const double median = walls[walls.size() / 2];
    std::printf("readsampleblock at 19200 baud: line time %.4f s (%d byte times), wall median %.4f s, best %.4f s, "
                "worst %.4f s: %+.2f%% over the line (target within 5%%)\n",
                lineSeconds, lineBytes, median, walls.front(), walls.back(), 100.0 * (median / lineSeconds - 1.0));
    disconnectunit();
    return 0;
}
