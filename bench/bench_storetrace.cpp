// storetrace of a 2001-point trace through a chain of five components of about 100 rows each:
// the time per trace, and how many finds the slot tables ran against the rows crossed.

#include "levels/correction.h"
#include "levels/correctiontables.h"
#include "link/storetrace.h"
#include "shell/state.h"
#include "support/chaindb.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace kw;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    resetState();
    // Antenna, two cables, an attenuator and a preamplifier; uneven row spacing, 30..1000 MHz.
    std::vector<ChainComponent> parts;
    for (int k = 0; k < 5; ++k) {
        ChainComponent c{101 + k, k == 0 ? 0 : 1, 3.0f, {}};
        const int n = 96 + k * 2;
        for (int r = 0; r < n; ++r) {
            const float x = float(r) / float(n - 1);
            c.rows.emplace_back(30.0f + 970.0f * x * (0.6f + 0.4f * x), 1.0f + float(k) + 5.0f * x);
        }
        parts.push_back(c);
    }
    makeChainDatabase(dir.filePath(QStringLiteral("bench.mdb")), QStringLiteral("Bench"), parts);
    setupconfiguration(QStringLiteral("Bench"));
    st.correctionon = 1;
    st.lmaxdist = 10.0f;
    st.freqstart = 30.0f;
    st.freqstop = 1000.0f;
    for (int i = 1; i <= 2044; ++i)
        st.rawblock[size_t(i)] = int16_t((i * 37) % 200 + 20);
    const Trace raw = st.rawblock;
    opencorrectiontables();

    // Rows a trace from 30 to 1000 MHz crosses: every row above the first point, per component.
    long long crossings = 0;
    for (const auto &c : parts)
        crossings += std::count_if(c.rows.begin(), c.rows.end(),
                                   [](const auto &r) { return r.first > 30.0f + 970.0f / 2001; });

    const int runs = 200;
    std::vector<double> ms;
    long long finds = 0;
    for (int run = 0; run < runs; ++run) {
        st.rawblock = raw;
        const long long before = correctionqueries();
        QElapsedTimer t;
        t.start();
        storetrace();
        ms.push_back(t.nsecsElapsed() * 1e-6);
        finds = correctionqueries() - before;
    }
    std::sort(ms.begin(), ms.end());
    std::printf("storetrace, 2001 points, 5 components of 96..104 rows: median %.3f ms, best %.3f ms, worst %.3f ms "
                "(target < 2 ms)\n",
                ms[ms.size() / 2], ms.front(), ms.back());
    std::printf("finds per trace: %lld for %lld rows crossed (three finds a crossing: %lld)\n", finds, crossings,
                3 * crossings);
    st.db.Close();
    return 0;
}
