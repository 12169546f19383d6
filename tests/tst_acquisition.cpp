// Trace acquisition against the simulator over a real pseudo-terminal.

#include "levels/correction.h"
#include "levels/correctiontables.h"
#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "link/transport.h"
#include "shell/state.h"
#include "support/chaindb.h"
#include "support/simfixture.h"

#include <QtTest>
#include <algorithm>

using namespace kw;

namespace {
// The analyser in zero span at a frequency, as the stepped run leaves it.
void zeroSpanAt(SimBench &bench, double mhz, int bandwith)
{
    bench.sim().withModel([=](kt::Analyser &a) { std::tie(a.settings().span, a.settings().centerfreq, a.settings().bandwith) = std::tuple(0, mhz, bandwith); });
}

bool anyNonZero(const Trace &t)
{
    return std::any_of(t.begin() + 1, t.begin() + 2002, [](int16_t v) { return v != 0; });
}
}  // namespace

struct SteppedPathsByFirmwareCase { QString firmware; int baud; QString step; bool trailerTaken; double movedTo; };

class TestAcquisition : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void init()
    {
        for (int slot = 0; slot < 5; ++slot)
            setcorrectiontable(slot, nullptr);
    }
    void cleanup()
    {
        if (st.db.isSet())
            st.db.Close();
    }

    void steppedPathsByFirmware_data()
    {
        QTest::addColumn<SteppedPathsByFirmwareCase>("c");
        QTest::newRow("1.04: RD, then asked with #bm1") << SteppedPathsByFirmwareCase{"1.04", 19200, "#ss1", false, 123.45};
        QTest::newRow("1.05: block with trailer, no RD") << SteppedPathsByFirmwareCase{"1.05", 19200, "#ss1", true, 123.45};
        QTest::newRow("1.10: #ss2 moves by 0.12") << SteppedPathsByFirmwareCase{"1.10", 19200, "#ss2", true, 123.57};
        QTest::newRow("1.46 at 38400: RD after") << SteppedPathsByFirmwareCase{"1.46", 38400, "#ss2", true, 123.57};
        QTest::newRow("1.47: RD after") << SteppedPathsByFirmwareCase{"1.47", 19200, "#ss2", true, 123.57};
    }
    void steppedPathsByFirmware()
    {
        QFETCH(SteppedPathsByFirmwareCase, c);
        const auto &[firmware, baud, step, trailerTaken, movedTo] = c;
        SimBench bench({.firmware = firmware, .baud = baud});
        st.baudrate = baud;
        QVERIFY(bench.connect());
        zeroSpanAt(bench, 123.45, 120);
        std::tie(st.centerfreq, st.command) = std::pair(77.0f, step);
        sendecho();
        readstep();
        QCOMPARE(std::tuple(bench.shown(), st.filemode, st.centerfreq), std::tuple(QStringList(), uint8_t(1), trailerTaken ? 123.45f : 77.0f));
        bench.sim().withModel([&](kt::Analyser &a) { QVERIFY(qAbs(a.settings().centerfreq - movedTo) < 1e-9); });
        // Raw bytes stay in rawblock; the trailer's text follows them.
        QCOMPARE(std::pair(st.rawblock[2002 + 17], st.rawblock[2002 + 18]), std::pair(int16_t('0'), int16_t('1')));
        // Nothing of the step is left on the line: the next setting is confirmed at once.
        setes1();
        QCOMPARE(std::pair(st.serialerror, bench.log().first()), std::pair(uint8_t(0), step));
        QCOMPARE(bench.log().contains(QStringLiteral("#bm1")), firmware == QLatin1String("1.04"));
    }

    void missingRdAfterTheBlock()
    {
        SimBench bench({.firmware = "1.50"});
        connectunit();
        zeroSpanAt(bench, 300.0, 400);
        // The analyser falls silent; the block arrives, and something else where "RD" belongs.
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.noReply = true; });
        kt::Settings s;
        std::tie(s.span, s.centerfreq) = std::pair(0, 300.0);
        kt::SimSignal signal;
        const float before = st.centerfreq;
        stepnew();
        bench.sim().inject(kt::buildSampleBlock(s, signal, 0) + "XX\r");
        readstep();
        QCOMPARE(std::tuple(bench.shown(), st.centerfreq), std::tuple(QStringList{"Serial - Error|Wait for RD"}, before));  // not taken
    }

    void blockCutShort_data()
    {
        QTest::addColumn<bool>("stepped");
        QTest::addColumn<QString>("box");
        QTest::newRow("live") << false << "Serial - Error| Sample read error (#bm1)";
        QTest::newRow("stepped") << true << "Serial - Error|Read Data";
    }
    void blockCutShort()
    {
        QFETCH(bool, stepped);
        QFETCH(QString, box);
        SimBench bench;
        connectunit();
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.blockCutAt = 1500; });
        st.sampledata.fill(-5);
        st.rawblock.fill(-1);
        if (stepped) {
            zeroSpanAt(bench, 200.0, 400);
            stepnew();
            readstep();
        } else {
            // After the first failure the second trace is still read, and fails in silence.
            st.viewb = 1;
            readtraces();
        }
        QCOMPARE(bench.shown(), QStringList{box});
        // The trace keeps its old data; rawblock is new up to the cut.
        QCOMPARE(std::tuple(st.portopen, int(st.sampledata[1]), int(st.rawblock[1600]), st.rawblock[1500] >= 0, st.busycursor),
                 std::tuple(int16_t(0), -5, -1, true, uint8_t(0)));
    }

    void wrongChecksumIsStoredWithoutAWord()
    {
        SimBench bench;
        connectunit();
        bench.sim().withModel([](kt::Analyser &a) {
            a.options().faults.wrongChecksum = true;
            a.options().faults.noise = QByteArray("\x01\xfe junk", 7);  // and stray bytes after every reply
        });
        readtraces();
        // No second asking.
        QVERIFY(bench.shown().isEmpty() && anyNonZero(st.sampledata) && st.portopen == 1 && bench.log().count(QStringLiteral("#bm1")) == 1);
    }

    void allFiveTracesWithCorrection()
    {
        SimBench bench;
        // An antenna at 3 m, 10 m of cable, against a limit defined at 10 m.
        makeChainDatabase(dir_.filePath(QStringLiteral("chain.mdb")), QStringLiteral("Bench"),
                          {{1, 0, 3.0f, {{30, 18}, {100, 9.5f}, {1000, 24}}}, {2, 1, 0.0f, {{10, 0.46f}, {1000, 7.05f}}}});
        QVERIFY(setupconfiguration(QStringLiteral("Bench")));
        st.correctionon = st.calc = 1;
        st.lmaxdist = 10.0f;
        connectunit();
        setcalcon();
        savetob();
        st.viewsample = st.viewaverage = st.viewmaxhold = st.viewb = st.viewab = 1;
        bench.clearLog();
        readtraces();
        QCOMPARE(bench.shown(), QStringList());
        const QStringList log = bench.log();
        const QStringList reads = log.filter(QRegularExpression(QStringLiteral("^#(vm|bm1$)")));
        QCOMPARE(reads.mid(0, 11), (QStringList{"#vm0", "#bm1", "#vm3", "#bm1", "#vm4", "#bm1", "#vm1", "#bm1", "#vm2",
                                                "#bm1", "#vm0"}));
        QCOMPARE(log.mid(1, 2), (QStringList{"#rl", "#at"}));  // the block is converted with fresh values
        for (Trace *t : {&st.sampledata, &st.averagedata, &st.maxholddata, &st.memorydata})
            QVERIFY(anyNonZero(*t));
        QVERIFY(st.sampledate > 0 && st.averagedate > 0 && st.maxholddate > 0 && st.memorydate > 0 && st.grafikmax > st.grafikmin);
    }
};

QTEST_MAIN(TestAcquisition)
#include "tst_acquisition.moc"
