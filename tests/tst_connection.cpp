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
        QCOMPARE(st.portopen, int16_t(1));
        QCOMPARE(st.ckrm, uint8_t(1));
        QCOMPARE(st.modelname, QStringLiteral("3420"));
        QCOMPARE(st.firmware, QStringLiteral("1.70"));
        QCOMPARE(st.caption, QStringLiteral("KW3400R - V1.53       Unit:3420       Firmware:1.70"));
        QCOMPARE(bench.log(), (QStringList{"#KT", "#br19200", "#kl1", "#KT", "#VN", "#cr"}));
        QVERIFY(bench.boxes().shown.empty());
        QCOMPARE(st.busycursor, uint8_t(0));

        disconnectunit();
        QCOMPARE(st.portopen, int16_t(0));
        QCOMPARE(st.ckrm, uint8_t(0));
        QCOMPARE(bench.log().last(), QStringLiteral("#kl0"));
        QCOMPARE(st.caption, QStringLiteral("KW3400R - V1.53       Offline"));
        QVERIFY(comm1().portOpen());  // the link is down, the port stays open
    }

    void foundAtASlowerSpeedIsMovedToTheWantedOne()
    {
        SimBench bench({.model = "3400", .firmware = "1.20", .baud = 9600});
        connectunit();
        QCOMPARE(st.portopen, int16_t(1));
        QCOMPARE(bench.sim().lineBaud(), 19200);
        int analyserBaud = 0;
        bench.sim().withModel([&](kt::Analyser &a) { analyserBaud = a.baud(); });
        QCOMPARE(analyserBaud, 19200);
        QCOMPARE(comm1().settings(), QStringLiteral("19200,N,8,1"));
        // Old firmware: no warm-up question.
        QCOMPARE(bench.log(), (QStringList{"#KT", "#br19200", "#kl1", "#KT", "#VN"}));
    }

    void versionZeroIsAskedThreeTimes()
    {
        SimBench bench({.faults = {.vnZero = true}});
        connectunit();
        QCOMPARE(bench.log().count(QStringLiteral("#VN")), 3);
        QCOMPARE(st.firmware, QStringLiteral("0.00"));
        QCOMPARE(firmwareNumber(), 0.0f);
        QVERIFY(!bench.log().contains(QStringLiteral("#cr")));
    }

    void unknownModelIsNotFound()
    {
        SimBench bench({.faults = {.unknownModel = true}});
        st.ckrm = 1;
        connectunit();
        QCOMPARE(st.portopen, int16_t(0));
        QCOMPARE(st.ckrm, uint8_t(0));
        QCOMPARE(bench.shown(), QStringList{"Serial - Error|Unit not found"});
        QCOMPARE(st.busycursor, uint8_t(0));
        QVERIFY(!bench.log().contains(QStringLiteral("#kl1")));
    }

    void autosearchIsQuietUntilTheEnd()
    {
        SimBench bench({.faults = {.noEcho = true}});
        autosearch();
        QCOMPARE(st.comport, int16_t(5));
        QCOMPARE(st.serialquiet, uint8_t(0));
        QCOMPARE(st.portopen, int16_t(0));
        QCOMPARE(bench.shown(), QStringList{"Serial - Error|Unit not found"});
    }

    void autosearchFindsThePortAndNamesIt()
    {
        SimBench bench({.baud = 4800});
        st.comport = 4;
        autosearch();
        QCOMPARE(st.portopen, int16_t(1));
        QCOMPARE(st.comport, int16_t(2));
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
        QCOMPARE(st.portopen, int16_t(1));
        QVERIFY(rm->isChecked());
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53       Unit:3420       Firmware:1.70"));
        rm->click();
        QCOMPARE(st.portopen, int16_t(0));
        QVERIFY(!rm->isChecked());
        QCOMPARE(bench.log().last(), QStringLiteral("#kl0"));
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53       Offline"));

        bench.sim().unplug();
        rm->click();  // nothing answers now
        QVERIFY(!rm->isChecked());
        QCOMPARE(st.portopen, int16_t(0));
        QCOMPARE(bench.boxes().count(QStringLiteral("Serial - Error")), 1);
    }
};

QTEST_MAIN(TestConnection)
#include "tst_connection.moc"
