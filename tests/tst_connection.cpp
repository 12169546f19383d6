// Finding, identifying and releasing the analyser over a real pseudo-terminal.

#include "link/connection.h"
#include "link/transport.h"
#include "platform/serialcontrol.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "support/simfixture.h"

#include <QCheckBox>

#include <QtTest>

using namespace kw;

class TestConnection : public QObject {
    Q_OBJECT
private slots:
    void foundAtFirstProbeStillSendsTheSpeed()
    {
        SimBench bench;
        connectunit();
        QCOMPARE(std::tuple(st.portopen, st.ckrm, st.modelname, st.firmware, st.busycursor),
                 std::tuple(int16_t(1), uint8_t(1), QStringLiteral("3420"), QStringLiteral("1.70"), uint8_t(0)));
        QCOMPARE(st.caption, QStringLiteral("KW3400R - V1.53       Unit:3420       Firmware:1.70"));
        QCOMPARE(std::pair(bench.log(), bench.shown()), std::pair(QStringList{"#KT", "#br19200", "#kl1", "#KT", "#VN", "#cr"}, QStringList()));

        disconnectunit();
        // The link is down, the port stays open.
        QCOMPARE(std::tuple(st.portopen, st.ckrm, bench.log().last(), st.caption, comm1().portOpen()),
                 std::tuple(int16_t(0), uint8_t(0), QStringLiteral("#kl0"), QStringLiteral("KW3400R - V1.53       Offline"), true));
    }

    void foundAtASlowerSpeedIsMovedToTheWantedOne()
    {
        SimBench bench({.model = "3400", .firmware = "1.20", .baud = 9600});
        connectunit();
        int analyserBaud = 0;
        bench.sim().withModel([&](kt::Analyser &a) { analyserBaud = a.baud(); });
        QCOMPARE(std::tuple(st.portopen, bench.sim().lineBaud(), analyserBaud, comm1().settings()),
                 std::tuple(int16_t(1), 19200, 19200, QStringLiteral("19200,N,8,1")));
        // Old firmware: no warm-up question.
        QCOMPARE(bench.log(), (QStringList{"#KT", "#br19200", "#kl1", "#KT", "#VN"}));
    }

    void versionZeroIsAskedThreeTimes()
    {
        SimBench bench({.faults = {.vnZero = true}});
        connectunit();
        QCOMPARE(std::tuple(bench.log().count(QStringLiteral("#VN")), bench.log().contains(QStringLiteral("#cr")), st.firmware, firmwareNumber()),
                 std::tuple(3, false, QStringLiteral("0.00"), 0.0f));
    }

    void unknownModelIsNotFound()
    {
        SimBench bench({.faults = {.unknownModel = true}});
        st.ckrm = 1;
        connectunit();
        QCOMPARE(std::tuple(st.portopen, st.ckrm, st.busycursor), std::tuple(int16_t(0), uint8_t(0), uint8_t(0)));
        QVERIFY(bench.shown() == QStringList{"Serial - Error|Unit not found"} && !bench.log().contains(QStringLiteral("#kl1")));
    }

    void autosearchIsQuietUntilTheEnd()
    {
        SimBench bench({.faults = {.noEcho = true}});
        autosearch();
        QCOMPARE(std::tuple(st.comport, st.serialquiet, st.portopen), std::tuple(int16_t(5), uint8_t(0), int16_t(0)));
        QCOMPARE(bench.shown(), QStringList{"Serial - Error|Unit not found"});
    }

    void autosearchFindsThePortAndNamesIt()
    {
        SimBench bench({.baud = 4800});
        st.comport = 4;
        autosearch();
        QCOMPARE(std::tuple(st.portopen, st.comport), std::tuple(int16_t(1), int16_t(2)));
        QCOMPARE(bench.shown(), QStringList{"Autosearch|Unit found at port:  2   Baud:  19200"});
    }

    void theRmBoxConnectsAndReleases()
    {
        SimBench bench({.baud = 9600});
        Mdi window;
        loadMain(window);
        st.serialtimeout = 2;
        QCheckBox *rm = window.toolPanel()->ckrm();
        rm->click();
        QCOMPARE(std::tuple(st.portopen, rm->isChecked(), window.windowTitle()),
                 std::tuple(int16_t(1), true, QStringLiteral("KW3400R - V1.53       Unit:3420       Firmware:1.70")));
        rm->click();
        QCOMPARE(std::tuple(st.portopen, rm->isChecked(), window.windowTitle(), bench.log().last()),
                 std::tuple(int16_t(0), false, QStringLiteral("KW3400R - V1.53       Offline"), QStringLiteral("#kl0")));

        bench.sim().unplug();
        rm->click();  // nothing answers now
        QVERIFY(st.portopen == 0 && !rm->isChecked() && bench.boxes().count(QStringLiteral("Serial - Error")) == 1);
    }
};

QTEST_MAIN(TestConnection)
#include "tst_connection.moc"
