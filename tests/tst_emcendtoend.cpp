// Whole runs against the simulator on short bands: a Sweep + Step test over a pulsed emission,
// and Step tests with the three kinds of firmware stepping.

#include "emc/passes.h"
#include "emc/rundriver.h"
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QFile>
#include <algorithm>
#include <QtTest>

using namespace kw;

namespace {

struct Result {
    double f, memory, sample, maxhold, average, qpeak, hMax;
};

// The delivered database with one test of our own, the simulator behind Com2, and a file name
// waiting in the save dialog.
struct Bench {
    SimBench sim;
    QString file;
    explicit Bench(const kt::Options &options = {}) : sim(options)
    {
        const QString db = sim.dir() + QStringLiteral("/default.mdb");
        QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), db);
        QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
        st.databasefile = db;
        st.db = OpenDatabase(db);
        st.dbversion = 1.1f;
        file = sim.dir() + QStringLiteral("/run.emc");
        sim.boxes().files.push_back(file);
    }
    ~Bench() { st.db.Close(); }
    // A copy of the delivered radiated test (quasi-peak, 400 kHz ... ) over start..stop.
    void defineTest(int mode, float start, float stop, float leveldist, int meastime = 1)
    {
        st.db.Execute(QStringLiteral("insert into test select 'Short', config, peak, average, 1, 1, 0, unit, ref, atten, %1, %2, "
                                     "%3, %5, 0, %4, 1, 0, 0 from test where Name = 'CISPR 32 B radiated 3 m'")
                          .arg(mode)
                          .arg(start)
                          .arg(stop)
                          .arg(leveldist)
                          .arg(meastime));
        st.testname = QStringLiteral("Short");
    }
    std::vector<Result> rows() const
    {
        std::vector<Result> list;
        Database f = OpenDatabase(file);
        Recordset r = f.OpenRecordset(QStringLiteral("select * from measurement order by frequency"), dbOpenSnapshot);
        const auto n = [&](const char *c) { const QVariant v = r.Field(QLatin1String(c)); return v.isNull() ? -2000.0 : v.toDouble(); };
        for (; !r.Eof(); r.MoveNext())
            list.push_back({n("Frequency"), n("Memory_dBmW"), n("sample_dBmW"), n("Maxhold_dBmW"), n("Average_dBmW"),
                            n("qpeak_dBmW"), n("h_Maxhold_dBmW")});
        f.Close();
        return list;
    }
};

}  // namespace

class TestEmcEndToEnd : public QObject {
    Q_OBJECT
private slots:
    // 145-152 MHz: two slices, a pulsed carrier at 148.5 MHz above the class B line. Its rows
    // are marked and measured again, and the three detectors tell the pulse apart.
    void sweepAndStep()
    {
        Bench bench;
        // Ten seconds of dwell on the test clock are one on the analyser's: some ten sweeps, enough
        // for Max Hold to hold the 10 ms pulse whatever the phase of the first sweep.
        bench.defineTest(0, 145.0f, 152.0f, -6.0f, 10);
        emcStart();
        QCOMPARE(bench.sim.shown(), (QStringList{QStringLiteral("save|Select Measurement"),
                                                 QStringLiteral("EMC - Sweep + Step|Set to horizontal / L position")}));
        const auto rows = bench.rows();
        QVERIFY(rows.size() >= 35 && rows.size() <= 38);  // the 0.2 MHz grid over 7 MHz
        QCOMPARE(rows.front().f, 145.0);
        int marked = 0;
        for (const Result &r : rows) {
            QVERIFY(r.memory > -1000);
            QVERIFY(r.sample == 0 || r.sample == 1);
            if (r.sample == 1) {
                ++marked;
                QVERIFY2(std::abs(r.f - 148.5) < 0.5, qPrintable(QString::number(r.f)));
                QCOMPARE(r.hMax, r.maxhold);
                // Measured again in zero span: the pulse's average lies well below its peak, the
                // quasi-peak of its hundred pulses a second not above it.
                QVERIFY2(r.maxhold + 0.01 >= r.qpeak && r.qpeak > r.average + 6,
                         qPrintable(QStringLiteral("%1 %2 %3").arg(r.maxhold).arg(r.qpeak).arg(r.average)));
            } else {
                QCOMPARE(r.maxhold, -1000.0);
            }
        }
        QVERIFY(marked >= 2);  // at least the rows either side of the carrier
        const QStringList log = bench.sim.log();
        QVERIFY(log.contains(QStringLiteral("#bw400")) && log.contains(QStringLiteral("#es1")));
        QCOMPARE(st.portopen, int16_t(0));  // finished: preset and disconnected
    }

    // 39-44 MHz, one slice: a carrier 3 dB under the line with a short burst on top four times a
    // second. The carrier marks its row; measured again, the three detectors part: the peak is the
    // burst's, the quasi-peak a few dB under it, the average near the carrier.
    void detectorsPartOnABurst()
    {
        Bench bench;
        bench.defineTest(0, 39.0f, 44.0f, -6.0f);
        emcStart();
        const auto rows = bench.rows();
        const auto carrier = std::find_if(rows.begin(), rows.end(), [](const Result &r) { return std::abs(r.f - 41.0) < 0.01; });
        QVERIFY(carrier != rows.end());
        QCOMPARE(carrier->sample, 1.0);
        const QString levels = QStringLiteral("%1 %2 %3").arg(carrier->maxhold).arg(carrier->qpeak).arg(carrier->average);
        QVERIFY2(carrier->maxhold - carrier->qpeak > 1.0 && carrier->maxhold - carrier->qpeak < 6.0, qPrintable(levels));
        QVERIFY2(carrier->qpeak - carrier->average > 6.0, qPrintable(levels));
    }

    void stepping_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<QString>("step");
        QTest::addColumn<bool>("readBack");
        QTest::newRow("1.04") << "1.04" << "#ss1" << true;
        QTest::newRow("1.09") << "1.09" << "#ss1" << false;
        QTest::newRow("1.10") << "1.10" << "#ss2" << false;
    }
    // A Step test over 30-31 MHz at 400 kHz steps. Old firmware is moved by "#cf" each step, and
    // its rows take the frequency already advanced; from 1.10 the analyser moves by itself.
    void stepping()
    {
        QFETCH(QString, firmware);
        QFETCH(QString, step);
        QFETCH(bool, readBack);
        kt::Options options;
        options.firmware = firmware;
        Bench bench(options);
        bench.defineTest(1, 30.0f, 31.0f, 0.0f);
        emcStart();
        QVERIFY(steppedpending());
        int ticks = 0;
        while (steppedpending() && ticks++ < 50)
            steptick();
        const auto rows = bench.rows();
        if (firmware == QLatin1String("1.10"))
            QVERIFY(rows.size() == 2 || rows.size() == 3);
        else
            QCOMPARE(int(rows.size()), 3);
        for (const Result &r : rows)  // a Step test has no sweep
            QVERIFY(r.maxhold > -200 && r.qpeak > -200 && r.average > -200 && r.memory == -2000.0);
        if (firmware != QLatin1String("1.10"))
            QCOMPARE(std::tuple(float(rows[0].f), float(rows[2].f)), std::tuple(30.4f, 31.2f));
        const QStringList all = bench.sim.log();
        const QStringList log = all.mid(all.indexOf(QStringLiteral("#es1")));  // from the first step on
        const QString other = step == QLatin1String("#ss1") ? QStringLiteral("#ss2") : QStringLiteral("#ss1");
        QVERIFY(log.count(step) >= 4);
        QCOMPARE(log.count(other), 0);
        // The read-back after every "#cf" of a step, besides the one at the start.
        QCOMPARE(log.count(QStringLiteral("#cf")), readBack ? 4 : 1);
        QCOMPARE(log.contains(QStringLiteral("#cf0030.400")), firmware != QLatin1String("1.10"));
        QCOMPARE(st.portopen, int16_t(1));  // the stepped run ends in preset, connected
    }
};

QTEST_MAIN(TestEmcEndToEnd)
#include "tst_emcendtoend.moc"
