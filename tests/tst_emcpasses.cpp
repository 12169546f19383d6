// How sweeps and steps become rows: the grid with its one limit row, second passes by position,
// an ambient pass first, the judging of rows against a limit with a step in it, the columns of
// the step results.

#include "emc/merge.h"
#include "emc/rundriver.h"
#include "platform/recordset.h"
#include "plot/measurementtable.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "store/runfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <map>
#include <ranges>

using namespace kw;

namespace {

struct Row {
    double memory, sample, maxhold, average, qpeak, ambientH, ambientV, hMax, vMax;
};

// The rows of the file by their frequency in kHz.
std::map<int, Row> rowsOf(const QString &path)
{
    std::map<int, Row> rows;
    Database f = OpenDatabase(path);
    Recordset r = f.OpenRecordset(QStringLiteral("select * from measurement order by frequency"), dbOpenSnapshot);
    const auto n = [&](const char *c) { const QVariant v = r.Field(QLatin1String(c)); return v.isNull() ? -2000.0 : v.toDouble(); };
    for (; !r.Eof(); r.MoveNext())
        rows[int(std::lround(n("Frequency") * 1000))] = {n("Memory_dBmW"), n("sample_dBmW"), n("Maxhold_dBmW"), n("Average_dBmW"),
                                                        n("qpeak_dBmW"), n("ambient_h_dBmW"), n("ambient_v_dBmW"),
                                                        n("h_Maxhold_dBmW"), n("v_Maxhold_dBmW")};
    f.Close();
    return rows;
}

std::vector<int> keys(const std::map<int, Row> &rows)
{
    const auto k = std::views::keys(rows);
    return {k.begin(), k.end()};
}

// An empty ".emc" file and the state of one 5 MHz slice from start, with point i at level i/2.5 dB.
struct Slice {
    QTemporaryDir dir;
    Slice()
    {
        resetState();
        st.measurefile = dir.filePath(QStringLiteral("slice.emc"));
        CreateMeasurementFile();
        for (int i = 1; i <= 2001; ++i)
            st.maxholddata[size_t(i)] = int16_t(i);
    }
    void merge(float start, double stepsize, float runstop, uint8_t second, uint8_t phase, float limitmark = 100000.0f)
    {
        std::tie(st.freqstart, st.freqstop, st.stepsize, st.runstop) = std::tuple(start, start + 5.0f, stepsize, runstop);
        std::tie(st.secondpass, st.ambientphase, st.doneupto, st.nextrowfreq, st.limitmark) = std::tuple(second, phase, start, start, limitmark);
        sweepmerge();
    }
};

}  // namespace

class TestEmcPasses : public QObject {
    Q_OBJECT
private slots:
    // The 400 kHz grid (0.2 MHz) with the limit's first frequency put in once; the first point
    // past the end of the band still gets its row. At 9 kHz the grid is 10 kHz.
    void gridAndLimitmark()
    {
        Slice s;
        s.merge(30.0f, 0.4, 31.5f, 0, 0, 30.1f);
        auto rows = rowsOf(st.measurefile);
        QCOMPARE(keys(rows), (std::vector<int>{30000, 30100, 30300, 30500, 30700, 30900, 31100, 31300, 31500, 31700}));
        QCOMPARE(float(rows[30100].memory), float(41 / 2.5));  // point 41 lies at 30.1 MHz
        for (const auto &[f, row] : rows)
            QVERIFY(row.sample == -1000 && row.maxhold == -1000 && row.ambientH == -1000 && row.ambientV == -1000);
        QCOMPARE(st.limitmark, 100000.0f);

        Slice fine;
        fine.merge(30.0f, 0.01, 30.05f, 0, 0);
        QCOMPARE(keys(rowsOf(st.measurefile)), (std::vector<int>{30000, 30010, 30020, 30030, 30040, 30050, 30060}));
    }

    // A second pass edits the first pass's rows by position; after a first pass that stopped
    // early it runs off the end and adds nothing. The larger sweep level stays.
    void secondPassAfterShortFirstPass()
    {
        Slice s;
        s.merge(30.0f, 0.4, 30.9f, 0, 0);
        const auto before = rowsOf(st.measurefile);
        for (int i = 1; i <= 2001; ++i)
            st.maxholddata[size_t(i)] = int16_t(i == 1 ? 200 : -200);
        s.merge(30.0f, 0.4, 35.0f, 1, 0);
        const auto after = rowsOf(st.measurefile);
        QCOMPARE(keys(after), keys(before));
        QCOMPARE(after.at(30000).memory, 80.0);            // point 1: 200 counts beat 0.4 dB
        QCOMPARE(after.at(30200).memory, before.at(30200).memory);  // point 81: -80 dB loses
        // An ambient pass writes its own column whatever stands there.
        s.merge(30.0f, 0.4, 35.0f, 1, 2);
        QCOMPARE(rowsOf(st.measurefile).at(30200).ambientV, -80.0);
    }

    // Rows made by an ambient pass: the DUT pass finds -1000 and takes its level.
    void ambientPassFirst()
    {
        Slice s;
        s.merge(30.0f, 0.4, 30.5f, 0, 1);
        auto rows = rowsOf(st.measurefile);
        QCOMPARE(std::tuple(float(rows.at(30200).ambientH), rows.at(30200).memory), std::tuple(float(81 / 2.5), -1000.0));
        s.merge(30.0f, 0.4, 30.5f, 1, 0);
        rows = rowsOf(st.measurefile);
        QCOMPARE(std::tuple(float(rows.at(30200).memory), float(rows.at(30200).ambientH)), std::tuple(float(81 / 2.5), float(81 / 2.5)));
    }

    // While a run writes, its file stays open on its log: the plot's read-only look sees every row
    // written so far; when the run ends the file is one file again, and a file made anew at the
    // held place starts empty.
    void fileHeldWhileTheRunWrites()
    {
        Slice s;
        s.merge(30.0f, 0.4, 31.5f, 0, 0);
        QVERIFY(runfileheld() && QFile::exists(st.measurefile + QStringLiteral("-wal")));
        const auto seen = readMeasurementTable(st.measurefile);
        QCOMPARE(seen ? seen->rows.size() : 0, size_t(9));
        runfinish();
        QCOMPARE(std::pair(runfileheld(), QFile::exists(st.measurefile + QStringLiteral("-wal"))), std::pair(false, false));
        QCOMPARE(rowsOf(st.measurefile).size(), size_t(9));

        s.merge(30.0f, 0.4, 30.5f, 1, 0);
        QVERIFY(runfileheld());
        QCOMPARE(CreateMeasurementFile(), uint8_t(0));
        QCOMPARE(std::pair(runfileheld(), QFile::exists(st.measurefile + QStringLiteral("-wal"))), std::pair(false, false));
        QVERIFY(rowsOf(st.measurefile).empty());
    }

    void flagging_data()
    {
        QTest::addColumn<float>("leveldist");
        QTest::addColumn<QList<int>>("marked");  // kHz
        // Limit -67 dB to 230 MHz, -60 dB above, a step at 230.
        QTest::newRow("at the limit") << 0.0f << QList<int>{100000, 230000, 500000};
        QTest::newRow("3 dB below counts") << -3.0f << QList<int>{100000, 200000, 230000, 230010, 500000};
        QTest::newRow("1 dB above asked") << 1.0f << QList<int>{500000};
    }
    // Equality marks; the row at 230 exactly stays in the lower segment; the next one moves past
    // the width-0 pair; rows below the first or above the last limit point are never marked.
    void flagging()
    {
        QFETCH(float, leveldist);
        QFETCH(QList<int>, marked);
        Slice s;
        Database f = OpenDatabase(st.measurefile);
        f.Execute(QStringLiteral("insert into limitlines (maxfreq, Maxhold_dBmW) values (30, -67), (230, -67), (230, -60), (1000, -60)"));
        const std::vector<std::pair<double, double>> levels = {{29.0, 0},        {100.0, -67},   {200.0, -69.5},  {230.0, -66.5},
                                                               {230.01, -62.5},  {500.0, -58.5}, {600.0, -1000}, {1000.5, 0}};
        for (const auto &[freq, level] : levels)
            f.Execute(QStringLiteral("insert into measurement (Frequency, Memory_dBmW, sample_dBmW) values (%1, %2, -1000)").arg(freq).arg(level));
        f.Close();
        std::tie(st.leveldist, st.limitbezug) = std::pair(leveldist, 0);
        flagrows();
        QList<int> got;
        for (const auto &[freq, row] : rowsOf(st.measurefile)) {
            if (row.sample == 1)
                got << freq;
            // Above the limit a row is left as it was.
            QVERIFY2(freq > 1000000 ? row.sample == -1000 : (row.sample == 0 || row.sample == 1), qPrintable(QString::number(freq)));
        }
        QCOMPARE(got, marked);
    }

    // The step rows: a first pass writes the common and its polarisation's column; a second pass
    // keeps the larger common value and writes the vertical column; a marked row likewise.
    void stepColumns()
    {
        Slice s;
        std::tie(st.reflevel, st.attenuator, st.noisevalue, st.detaverage, st.detqpeak) = std::tuple(-30.0f, 10.0f, 0, 0, 1);
        const auto block = [](int raw) {
            for (int i = 1; i <= 2001; ++i)
                st.rawblock[size_t(i)] = int16_t(raw);
        };
        std::tie(st.centerfreq, st.polarisationh, st.secondpass) = std::tuple(30.004f, false, 0);  // through "0.000": 30.004
        block(177);  // -40 dB
        stepresultrow();
        auto rows = rowsOf(st.measurefile);
        QCOMPARE(keys(rows), std::vector<int>{30004});
        // The average detector is off: not written.
        QCOMPARE(std::tuple(rows[30004].maxhold, rows[30004].vMax, rows[30004].hMax, rows[30004].average), std::tuple(-40.0, -40.0, -2000.0, -2000.0));
        QVERIFY(std::abs(rows[30004].qpeak - -40.0) < 1e-3);

        st.secondpass = 1;
        block(152);  // -50 dB: lower, the common column keeps -40
        stepresultrow();
        st.centerfreq = 30.5f;  // no row there yet: a new one, vertical columns
        stepresultrow();
        rows = rowsOf(st.measurefile);
        QCOMPARE(std::tuple(rows[30004].maxhold, rows[30004].vMax, rows[30500].maxhold, rows[30500].vMax), std::tuple(-40.0, -50.0, -50.0, -50.0));

        // A marked row of a second polarisation: larger wins in the common column.
        st.measdb = OpenDatabase(st.measurefile);
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from measurement order by frequency"));
        block(202);  // -30 dB
        markedresultrow();
        st.rs2.Close();
        st.measdb.Close();
        rows = rowsOf(st.measurefile);
        QCOMPARE(std::tuple(rows[30004].maxhold, rows[30004].vMax), std::tuple(-30.0, -30.0));
    }
};

QTEST_MAIN(TestEmcPasses)
#include "tst_emcpasses.moc"
