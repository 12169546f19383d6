// The echo-checked transport against the simulator on a real pseudo-terminal.

#include "link/connection.h"
#include "link/transport.h"
#include "platform/clock.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QThread>
#include <QtTest>
#include <ctime>

using namespace kw;

namespace {
double threadCpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// The program's own event loop, as between two clicks (a test's wait would sleep in between
// and hide a busy loop).
void runEventLoop(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}
}  // namespace

struct LineFaultsCase { int fault; QString command; int times; int sendretry; QStringList log; QStringList boxes; };

class TestTransport : public QObject {
    Q_OBJECT
private slots:
    void onlyTheFirstCommaBecomesAPoint()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        for (const char *command : {"#kl0,5", "#kl1,5,5"}) {
            st.command = QString::fromLatin1(command);
            sendcommand();
        }
        QCOMPARE(bench.log(), (QStringList{"#kl0.5", "#kl1.5,5"}));
    }

    void aBareCarriageReturnIsAnEmptyReply()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        comm1().setInputLen(1);
        bench.sim().inject(QByteArray("\r"));
        std::tie(st.rdretry, st.command) = std::pair(0, QStringLiteral("#xx"));
        readreply();
        QCOMPARE(std::tuple(st.reply, st.serialerror), std::tuple(QString(), uint8_t(0)));
    }

    void lineFaults_data()
    {
        QTest::addColumn<LineFaultsCase>("c");
        // A wrong echo restarts the command from its first character with the buffer emptied.
        const QStringList thrice{"#kl1", "#kl1", "#kl1"};
        QTest::newRow("one wrong echo") << LineFaultsCase{0, "#kl1", 1, 2, {"#kl1"}, {}};
        QTest::newRow("stray bytes before each command") << LineFaultsCase{1, "#kl1", 3, 1, thrice, {}};
        QTest::newRow("two wrong echoes") << LineFaultsCase{2, "#kl1", 1, 2, {}, {"Serial - Error| Data send error ( #kl1 )"}};
        // Unanswered, a setting goes out three times, each with one more carriage return.
        QTest::newRow("unconfirmed setting")
            << LineFaultsCase{3, "#kl1", 1, 1, thrice, {"Serial - Error| Data read error ( #kl1\r\r\r )"}};
        QTest::newRow("unanswered query") << LineFaultsCase{3, "#VN", 1, 1, {"#VN"}, {"Serial - Error| Data read error ( #VN\r )"}};
    }
    void lineFaults()
    {
        QFETCH(LineFaultsCase, c);
        const auto &[fault, command, times, sendretry, log, boxes] = c;
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([fault](kt::Analyser &a) {
            kt::Faults &f = a.options().faults;
            f.wrongEchoes = fault == 0 ? 1 : 0;
            f.noise = fault == 1 ? QByteArray("\x55\xaa#k", 4) : QByteArray();
            f.wrongEcho = fault == 2;
            f.noReply = fault == 3;
        });
        for (int i = 0; i < times; ++i) {
            st.command = command;
            command.startsWith(QLatin1String("#kl")) ? sendcommand() : querycommand();
            QCOMPARE(st.serialerror, uint8_t(boxes.isEmpty() ? 0 : 1));
            if (boxes.isEmpty())
                QCOMPARE(st.sendretry, uint8_t(sendretry));
        }
        QCOMPARE(bench.log(), log);
        if (!boxes.isEmpty()) {
            QCOMPARE(st.portopen, int16_t(0));
            // A second fault while offline sends nothing and shows no second box.
            st.command = QStringLiteral("#KT");
            querycommand();
            serialfault();
            QCOMPARE(bench.log(), log);
        }
        QCOMPARE(bench.shown(), boxes);
    }

    // During a quiet search a failed echo ends the setting at once: no reply is awaited.
    void aQuietEchoFailureEndsTheSetting()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.wrongEcho = true; });
        std::tie(st.serialquiet, st.reply, st.command) = std::tuple(1, QStringLiteral("before"), QStringLiteral("#kl1"));
        sendcommand();
        QCOMPARE(std::tuple(st.rdretry, st.reply, bench.shown()), std::tuple(uint8_t(1), QStringLiteral("before"), QStringList()));
    }

    // An analyser that vanishes under the open port (the adapter pulled, the far end gone) costs
    // no CPU: what cannot be sent is dropped, a wait ends by its time-out asleep, and nothing is
    // retried behind the program's back. The port stays open for the routines until the next
    // connection, which finds the analyser again once it is back.
    void aVanishedAnalyserIsLetGo()
    {
        SimBench bench;
        QVERIFY(bench.connect());
        bench.sim().stop();
        // Idle first, once the line has settled into its hung-up state, in which reads find
        // nothing rather than an error.
        QThread::msleep(100);
        double cpuBefore = threadCpuSeconds();
        runEventLoop(500);
        const double idleCpu = threadCpuSeconds() - cpuBefore;
        QVERIFY2(idleCpu < 0.05 * 0.5 && comm1().portOpen(), qPrintable(QStringLiteral("idle: %1 s CPU in 0.5 s").arg(idleCpu)));

        QElapsedTimer wall;
        wall.start();
        setTimerSource([wall] { return float(wall.elapsed()) / 1000.0f; });
        st.serialtimeout = 1;
        cpuBefore = threadCpuSeconds();
        st.command = QStringLiteral("#KT");
        querycommand();
        QCOMPARE(bench.shown(), QStringList{"Serial - Error| Data send error ( #KT )"});
        QVERIFY(wall.elapsed() >= 2000);  // two attempts, each to its time-out
        runEventLoop(300);
        const double cpu = threadCpuSeconds() - cpuBefore;
        const double seconds = double(wall.elapsed()) / 1000.0;
        QVERIFY2(cpu < 0.05 * seconds && comm1().portOpen(), qPrintable(QStringLiteral("%1 s CPU in %2 s").arg(cpu).arg(seconds)));

        bench.replug();
        connectunit();
        QCOMPARE(std::tuple(st.portopen, st.unitfound), std::tuple(int16_t(1), uint8_t(1)));
    }

    void theTimeOutIsStrict()
    {
        SimBench bench;
        QVERIFY(bench.connect());
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
        QVERIFY(bench.connect());
        float clock = 86398.0f;
        int afterMidnight = 0;
        setTimerSource([&] {
            const float now = clock;
            clock = std::fmod(clock + 0.5f, 86400.0f);
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
