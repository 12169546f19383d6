// Runs EMC passes against an in-process analyser, again and again, into one ".emc" file, and says
// on stdout each row it has written, the moment the write has returned. The crash test kills it.
//
//     emcrunhelper <application database> <measurement file>

#include "emc/emchooks.h"
#include "emc/loadtest.h"
#include "emc/passes.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "support/simfixture.h"

#include <QApplication>
#include <cstdio>

using namespace kw;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc < 3)
        return 2;
    SimBench bench;
    st.databasefile = QString::fromLocal8Bit(argv[1]);
    st.db = OpenDatabase(st.databasefile);
    st.dbversion = 1.1f;
    st.testname = QStringLiteral("Crash");
    st.reloadtest = 1;
    loadtest();
    st.measurefile = QString::fromLocal8Bit(argv[2]);
    CreateMeasurementFile();
    WriteEmcHeader();
    if (!bench.connect())
        return 3;
    emcHooks().rowWritten = [](const char *what, double f) {
        std::printf("%s %.3f\n", what, f);
        std::fflush(stdout);
    };
    st.polarisationh = true;
    for (int round = 0; round < 50; ++round) {
        std::printf("pass %d\n", round);
        std::fflush(stdout);
        st.secondpass = round == 0 ? 0 : 1;
        st.ambientphase = 0;
        sweeprun();
        // The stepped pass edits the rows of the sweep.
        st.secondpass = 1;
        startstepped();
        while (steppedpending() && st.portopen == 1)
            steptick();
        st.freqstart = st.runstart;
        st.freqstop = st.runstop;
    }
    return 0;
}
