// The echo-checked transport against the simulator on a real pseudo-terminal.

#include "link/connection.h"
#include "link/transport.h"
#include "platform/clock.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QtTest>

using namespace kw;

class TestTransport : public QObject {
    Q_OBJECT

    // Connected to a healthy analyser, log emptied, no box shown yet.
    static void connect(SimBench &bench)
    {
        connectunit();
        QCOMPARE(st.portopen, int16_t(1));
        bench.clearLog();
    }

    static void setFaults(SimBench &bench, const std::function<void(kt::Faults &)> &f)
    {
        bench.sim().withModel([&](kt::Analyser &a) { f(a.options().faults); });
    }

private slots:
    void onlyTheFirstCommaBecomesAPoint()
    {
        SimBench bench;
        connect(bench);
        st.command = QStringLiteral("#kl0,5");
        sendcommand();
        st.command = QStringLiteral("#kl1,5,5");
        sendcommand();
        QCOMPARE(bench.log(), (QStringList{"#kl0.5", "#kl1.5,5"}));
    }

    void aBareCarriageReturnIsAnEmptyReply()
    {
        SimBench bench;
        connect(bench);
        comm1().setInputLen(1);
        bench.sim().inject(QByteArray("\r"));
        st.rdretry = 0;
        st.command = QStringLiteral("#xx");
        readreply();
        QCOMPARE(st.reply, QString());
        QCOMPARE(st.serialerror, uint8_t(0));
    }

    void aWrongEchoRestartsTheCommandFromItsFirstCharacter()
    {
        SimBench bench;
        connect(bench);
        setFaults(bench, [](kt::Faults &f) { f.wrongEchoes = 1; });
        st.command = QStringLiteral("#kl1");
        sendcommand();
        QCOMPARE(st.serialerror, uint8_t(0));
        QCOMPARE(st.sendretry, uint8_t(2));
        QCOMPARE(bench.log(), (QStringList{"#kl1"}));
        QVERIFY(bench.boxes().shown.empty());
    }

    void strayBytesBeforeACommandAreThrownAway()
    {
        SimBench bench;
        connect(bench);
        setFaults(bench, [](kt::Faults &f) { f.noise = QByteArray("\x55\xaa#k", 4); });
        for (int i = 0; i < 3; ++i) {
            st.command = QStringLiteral("#kl1");
            sendcommand();
            QCOMPARE(st.serialerror, uint8_t(0));
            QCOMPARE(st.sendretry, uint8_t(1));
        }
    }

    void twoFailedEchoesGiveTheSendErrorOnce()
    {
        SimBench bench;
        connect(bench);
        setFaults(bench, [](kt::Faults &f) { f.wrongEcho = true; });
        st.command = QStringLiteral("#kl1");
        sendcommand();
        QCOMPARE(st.serialerror, uint8_t(1));
        QCOMPARE(st.portopen, int16_t(0));
        st.command = QStringLiteral("#KT");
        querycommand();  // offline now: nothing is sent, nothing shown
        serialfault();
        QCOMPARE(bench.boxes().shown.size(), size_t(1));
        QCOMPARE(bench.boxes().shown[0].title, QStringLiteral("Serial - Error"));
        QCOMPARE(bench.boxes().shown[0].text, QStringLiteral(" Data send error ( #kl1 )"));
    }

    // Unanswered, a setting goes out three times, each with one more carriage return.
    void anUnconfirmedSettingGrowsItsCarriageReturns()
    {
        SimBench bench;
        connect(bench);
        setFaults(bench, [](kt::Faults &f) { f.noReply = true; });
        st.command = QStringLiteral("#kl1");
        sendcommand();
        QCOMPARE(bench.log(), (QStringList{"#kl1", "#kl1", "#kl1"}));
        QCOMPARE(st.serialerror, uint8_t(1));
        QCOMPARE(st.rdretry, uint8_t(0));
        QCOMPARE(bench.boxes().shown.size(), size_t(1));
        QCOMPARE(bench.boxes().shown[0].text, QStringLiteral(" Data read error ( #kl1\r\r\r )"));
    }

    void aMissingAnswerToAQueryIsAReadError()
    {
        SimBench bench;
        connect(bench);
        setFaults(bench, [](kt::Faults &f) { f.noReply = true; });
        st.command = QStringLiteral("#VN");
        querycommand();
        QCOMPARE(bench.log(), (QStringList{"#VN"}));
        QCOMPARE(bench.boxes().shown.size(), size_t(1));
        QCOMPARE(bench.boxes().shown[0].text, QStringLiteral(" Data read error ( #VN\r )"));
    }

    void theTimeOutIsStrict()
    {
        SimBench bench;
        connect(bench);
        QList<float> readings{100.0f, 101.0f, 102.0f, 102.0f, 102.01f, 200.0f};
        int calls = 0;
        setTimerSource([&] { return readings.at(std::min<int>(calls++, readings.size() - 1)); });
        st.serialtimeout = 2;
        QVERIFY(!waitforbyte());
        QCOMPARE(calls, 5);  // 2.0 s elapsed is not yet over; 2.01 s is
    }

    // Across midnight the elapsed time is negative, so the wait runs on until a byte comes.
    void aWaitAcrossMidnightRunsOn()
    {
        SimBench bench;
        connect(bench);
        float clock = 86398.0f;
        int afterMidnight = 0;
        setTimerSource([&] {
            const float now = clock;
            clock += 0.5f;
            if (clock >= 86400.0f)
                clock -= 86400.0f;
            if (now < 100.0f && ++afterMidnight == 12)
                bench.sim().inject(QByteArray("x"));
            return now;
        });
        st.serialtimeout = 2;
        QVERIFY(waitforbyte());
        QVERIFY(afterMidnight >= 12);
    }
};

QTEST_MAIN(TestTransport)
#include "tst_transport.moc"
