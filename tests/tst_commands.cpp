// The command set on the wire: exact texts, the order of the four sequences, model differences.

#include "link/commands.h"
#include "link/connection.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "support/simfixture.h"

#include <QtTest>

using namespace kw;

struct SettingTextsCase { bool german; float centre; float reflevel; QStringList wire; };

class TestCommands : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { setNumberLocale(NumberLocale::enUS()); }

    void settingTexts_data()
    {
        QTest::addColumn<SettingTextsCase>("c");
        QTest::newRow("zero, centre clamped") << SettingTextsCase{false, 1050.1f, 0.0f, QStringList{"#cf1050.000", "#rl+00.0"}};
        QTest::newRow("minus point five") << SettingTextsCase{false, 88.5f, -0.5f, QStringList{"#cf0088.500", "#rl-00.5"}};
        // A comma decimal mark still goes out as a point.
        QTest::newRow("comma locale") << SettingTextsCase{true, 433.92f, -12.5f, QStringList{"#cf0433.920", "#rl-12.5"}};
    }
    void settingTexts()
    {
        QFETCH(SettingTextsCase, c);
        const auto &[german, centre, reflevel, wire] = c;
        SimBench bench;
        QVERIFY(bench.connect());
        setNumberLocale(german ? NumberLocale::deDE() : NumberLocale::enUS());
        st.centerfreq = centre;
        setcenterfreq();
        st.reflevel = reflevel;
        setreflevel();
        // The level is read back with trace A selected, and the analyser left in readmode.
        QCOMPARE(bench.log(), (wire + QStringList{"#vm0", "#rl", "#vm0"}));
        QCOMPARE(st.reflevel, reflevel);
    }

    void offlineSettingsStillChangeTheRecord()
    {
        SimBench bench;
        std::tie(st.centerfreq, st.triggerrun) = std::pair(-3.0f, 1);
        setcenterfreq();
        settriggeroff();
        QCOMPARE(std::tuple(st.centerfreq, st.triggerrun, bench.log()), std::tuple(0.0f, uint8_t(0), QStringList()));
    }

    void readAllSettingsFillsTheRecordInItsOrder()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([](kt::Analyser &a) {
            a.settings() = {.centerfreq = 123.456, .span = 200, .reflevel = -20.5, .attenuator = 20, .bandwith = 9,
                            .videofilter = 1, .dbperdiv = 5, .shown = 3, .calc = 1, .tgon = 1, .tglevel = -12.3};
        });
        bool uncal = false;
        uiHooks().uncalVisible = [&](bool on) { uncal = on; };
        st.filemode = 1;
        readallsettings();
        uiHooks().uncalVisible = nullptr;
        QCOMPARE(bench.log(), (QStringList{"#es0", "#cf", "#vm", "#vm0", "#rl", "#vm3", "#vf", "#sp", "#bw", "#at",
                                           "#tg", "#tl", "#dm", "#db", "#uc"}));
        QCOMPARE(std::tuple(st.centerfreq, st.span, st.reflevel, st.attenuator, st.bandwith, st.videofilter, st.dbperdiv),
                 std::tuple(123.456f, int16_t(200), -20.5f, 20.0f, int16_t(9), uint8_t(1), uint8_t(5)));
        QCOMPARE(std::tuple(st.calc, st.readmode, st.tgon, st.tglevel, st.filemode),
                 std::tuple(uint8_t(1), uint8_t(3), uint8_t(1), -12.3f, uint8_t(0)));
        QVERIFY(st.ucflag == 1 && uncal);  // 200 MHz is too wide for 9 kHz
    }

    void aModel3400NeverHearsOfTheTrackingGenerator()
    {
        SimBench bench({.model = "3400", .firmware = "1.20"});
        QVERIFY(bench.connect());
        std::tie(st.tgon, st.tglevel) = std::pair(1, -10.0f);
        settrackgen();
        QVERIFY(bench.log().isEmpty());
        readallsettings();
        setallsettings();
        for (const QString &command : bench.log())
            QVERIFY2(!command.startsWith("#tg") && !command.startsWith("#tl"), qPrintable(command));
        QVERIFY(!bench.log().contains(QStringLiteral("#uc")));  // firmware 1.20 does not know it
        QCOMPARE(std::tuple(st.tgon, st.tglevel), std::tuple(uint8_t(1), -10.0f));
    }

    void setAllSettingsForcesTheBandwidthUntilTheSpanIsSet()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        std::tie(st.centerfreq, st.reflevel, st.attenuator, st.tglevel) = std::tuple(100.0f, -20.0f, 0.0f, -20.0f);
        std::tie(st.span, st.bandwith, st.readmode, st.tgon, st.calc) = std::tuple(50, 120, 4, 1, 1);
        setallsettings();
        QCOMPARE(bench.log(), (QStringList{"#bw400", "#es0", "#cf0100.000", "#rl-20.0", "#vm0", "#rl", "#vm4", "#vf0",
                                           "#at0", "#vm0", "#tl-20.0", "#tl", "#tg1", "#tl-20.0", "#tl", "#db10",
                                           "#vm4", "#sp50", "#bw120", "#dm1", "#vm4"}));
    }

    void presetAndZeroSpanSequences()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        st.tgon = 0;
        setpreset();
        QCOMPARE(bench.log(), (QStringList{"#es0", "#vm0", "#cf0500.000", "#rl-30.0", "#vm0", "#rl", "#vm0", "#vf0",
                                           "#sp1000", "#bw400", "#at10", "#vm0", "#tl-50.0", "#tl", "#tg0", "#db10",
                                           "#bw400"}));
        bench.clearLog();
        std::tie(st.centerfreq, st.bandwith, st.readmode) = std::tuple(88.5f, 120, 3);
        setzerospan();
        const QStringList log = bench.log();
        const QStringList head{"#es0", "#cf0088.500", "#rl-30.0", "#vm0", "#rl", "#vm3", "#vf0", "#sp0", "#bw120",
                               "#at10", "#vm0", "#db10", "#dm1", "#vm3", "#vm0", "#es0", "#cf"};
        QCOMPARE(log.mid(0, head.size()), head);
        QCOMPARE(std::tuple(log.last(), st.span, st.readmode), std::tuple(QStringLiteral("#es1"), int16_t(0), uint8_t(0)));
    }

    void aFailureInTheMiddleIsToldOnceAndTheRestIsSilent()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.silentAfter = 4; });
        setallsettings();
        QCOMPARE(bench.shown(), QStringList{"Serial - Error| Data read error ( #vm0\r\r\r )"});
        QCOMPARE(std::pair(st.portopen, st.busycursor), std::pair(int16_t(0), uint8_t(0)));
        // Four answered, the fifth sent three times, then nothing more.
        QCOMPARE(bench.log(), (QStringList{"#bw400", "#es0", "#cf0500.000", "#rl-30.0", "#vm0", "#vm0", "#vm0"}));
    }
};

QTEST_MAIN(TestCommands)
#include "tst_commands.moc"
