// The Toolbox: trigger mode against the simulator's own report, its ends (a crossing, a stray
// report, Stop, a failed arming), printing and re-arming, the frequency steps, and the level
// taken from cursor 1.
#include "live/trigger.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "support/simfixture.h"

#include <QTimer>
#include <QtTest>

#include <algorithm>

using namespace kw;

namespace {

int highest(const Trace &t, int from, int to) { return *std::max_element(t.begin() + from, t.begin() + to + 1); }

// The commands after the last arming.
QStringList afterArming(const QStringList &log)
{
    for (qsizetype at = log.size() - 1; at >= 0; --at)
        if (log[at].startsWith(QLatin1String("#tr-")))
            return log.mid(at + 1);
    return {};
}

}  // namespace

class TestTrigger : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        statuses_.clear();
        setTriggerStatusView([this](const QString &s) { statuses_ << s; });
    }
    void cleanup()
    {
        setTriggerStatusView(nullptr);
        uiHooks() = UiHooks{};
    }

    // Armed below the bench's burst, the analyser reports the crossing by itself; the program
    // then reads Memory B, which holds the sweep with the burst in it, and disarms.
    void burstIsReadIntoMemoryB()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        std::tie(st.triggervalue, st.ckauto, st.liveread) = std::tuple(-27.0f, 1, 1);
        QTimer::singleShot(300, [&bench] { bench.sim().withModel([](kt::Analyser &a) { a.burst(0.5); }); });
        triggerStart();
        QCOMPARE(statuses_, QStringList({kTriggerInit, kTriggerWaiting, kTriggerReading, kTriggerIdle}));
        QCOMPARE(std::tuple(st.triggerrun, st.liveread, st.ckauto, st.viewb, st.viewsample),
                 std::tuple(uint8_t(0), uint8_t(0), uint8_t(0), uint8_t(1), uint8_t(0)));
        const QStringList log = bench.log();
        QCOMPARE(std::tuple(log.count(QStringLiteral("#tr-27.0")), afterArming(log).contains(QStringLiteral("#vm1")), log.last(), bench.shown()),
                 std::tuple(1, true, QStringLiteral("#tr0"), QStringList()));
        // 433.92 MHz on a 0..1000 MHz axis lies near point 869.
        QVERIFY(highest(st.memorydata, 855, 885) > highest(st.memorydata, 1400, 1600) + 50);
    }

    // With printing the loop prints after each crossing and arms again, until Stop.
    void printsAndRearmsUntilStopped()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([](kt::Analyser &a) { a.signal().scene().burstPeriod = 0.6; });
        std::tie(st.triggervalue, st.triggerprint) = std::pair(-27.0f, 1);
        int prints = 0;
        uiHooks().printReport = [&] {
            if (++prints == 2) {
                bench.sim().withModel([](kt::Analyser &a) { a.signal().scene().burstPeriod = 0; });
                QTimer::singleShot(100, [] { triggerStop(); });
            }
        };
        triggerStart();
        const QStringList log = bench.log();
        QCOMPARE(std::tuple(prints, log.count(QStringLiteral("#tr-27.0")), log.last(), statuses_.last()),
                 std::tuple(2, 3, QStringLiteral("#tr0"), QString(kTriggerIdle)));
    }

    // A report of three characters that is not "RD" ends the wait as Stop does: no read, no box.
    // Stop itself is seen at the next look.
    void strayReportAndStopEndTheWait_data()
    {
        QTest::addColumn<bool>("stray");
        QTest::newRow("stray report") << true;
        QTest::newRow("stop") << false;
    }
    void strayReportAndStopEndTheWait()
    {
        QFETCH(bool, stray);
        SimBench bench;
        QVERIFY(bench.connect());
        st.triggervalue = -50.4f;  // the bench's FM lies above: the simulator would report it
        bench.sim().withModel([](kt::Analyser &a) { a.signal().scene().ambientOn = false; a.signal().scene().dutOn = false; });
        QTimer::singleShot(200, [&bench, stray] {
            if (stray)
                bench.sim().inject("XYZ");
            else
                triggerStop();
        });
        triggerStart();
        QCOMPARE(statuses_, QStringList({kTriggerInit, kTriggerWaiting, kTriggerIdle}));
        const QStringList log = bench.log();
        QCOMPARE(std::tuple(log.contains(QStringLiteral("#tr-50.4")), afterArming(log), st.triggerrun, bench.shown()),
                 std::tuple(true, QStringList({QStringLiteral("#tr0")}), uint8_t(0), QStringList()));
    }

    // An arming the analyser does not confirm leaves at once: the fault is told, "#tr0" is not
    // sent, and status and flag stay as they were.
    void failedArmingLeavesAtOnce()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.silentAfter = 0; });
        triggerStart();
        QCOMPARE(std::tuple(statuses_, st.triggerrun), std::tuple(QStringList({kTriggerInit}), uint8_t(1)));
        QVERIFY(!bench.log().contains(QStringLiteral("#tr0")));
        QVERIFY(bench.shown().size() == 1 && bench.shown().first().startsWith(QStringLiteral("Serial - Error|")));
    }

    // Offline a step connects, sends the frequency, disconnects and reads nothing; online it
    // restarts the calculation and reads. The frequency stays within 0..1050 MHz.
    void frequencySteps()
    {
        SimBench bench;
        st.centerfreq = 500.0f;
        QString step = QStringLiteral("10");
        frequencyStep(+1, step);
        QCOMPARE(std::tuple(st.centerfreq, step, st.portopen), std::tuple(510.0f, QStringLiteral("10"), int16_t(0)));
        QVERIFY(bench.log().contains(QStringLiteral("#cf0510.000")) && !bench.log().contains(QStringLiteral("#bm1")));
        st.centerfreq = 5.0f;
        frequencyStep(-1, step);
        QVERIFY(st.centerfreq == 0.0f && bench.log().contains(QStringLiteral("#cf0000.000")));

        QVERIFY(bench.connect());
        std::tie(st.calc, st.centerfreq) = std::pair(1, 1045.0f);
        frequencyStep(+1, step);
        const QStringList log = bench.log();
        QCOMPARE(std::tuple(st.centerfreq, log.mid(0, 2), log.contains(QStringLiteral("#bm1")), st.portopen),
                 std::tuple(1050.0f, QStringList({"#cf1050.000", "#dm1"}), true, int16_t(1)));
    }

    // The level from cursor 1 and from the box lose unit offset and attenuator and are held to
    // the analyser's range; after a change the box shows them with both, when painted without
    // the attenuator.
    void levelFromCursorAndBox()
    {
        resetState();
        st.unit = QStringLiteral("dBuV");
        std::tie(st.unitoffset, st.attenuator, st.cursor1freq, st.cursor1level) = std::tuple(107.0f, 10.0f, 100.0f, 40.0f);
        triggerFromCursor();
        QCOMPARE(std::tuple(st.triggervalue, triggerText(), triggerPaintText()), std::tuple(-77.0f, QStringLiteral("40.0"), QStringLiteral("30.0")));

        st.cursor1level = 120.0f;  // would be -23 dBm: held to -27
        triggerFromCursor();
        QCOMPARE(std::tuple(st.triggervalue, triggerText()), std::tuple(-27.0f, QStringLiteral("90.0")));
        triggerFromText(QStringLiteral("0"));
        QCOMPARE(std::tuple(st.triggervalue, triggerText()), std::tuple(-99.8f, QStringLiteral("17.2")));
        triggerFromText(QStringLiteral("abc"));
        QCOMPARE(st.triggervalue, -99.8f);
    }

private:
    QStringList statuses_;
};

QTEST_MAIN(TestTrigger)
#include "tst_trigger.moc"
