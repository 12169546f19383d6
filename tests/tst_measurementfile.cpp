#include "platform/clock.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "plot/drawplot.h"
#include "plot/measurementtable.h"
#include "plot/plotsources.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "support/programdir.h"
#include "support/recordingplot.h"

#include <QtTest>

using namespace kw;
using kwtest::RecordingPlot;

namespace {

constexpr double kSavedAt = 46000.5;  // the clock's "now" while a file is written

// A value as a 32-bit float column gives it back.
double f(double value) { return double(float(value)); }

// Limit n of the delivered database's shape has n points at 10, 20, ... MHz, levels -10 - n, -20 - n, ...
void addLimit(int limitnr, int points)
{
    for (int k = 1; k <= points; ++k)
        st.db.Execute(QStringLiteral("insert into limitdef values (%1, %2, %3)").arg(limitnr).arg(10 * k).arg(-10 * k - limitnr));
}

// Every column of every row of a table or query, in the file's order.
QList<QVariantList> rowsOf(const QString &path, const QString &source)
{
    Database file = OpenDatabase(path);
    Recordset rs = file.OpenRecordset(source, dbOpenSnapshot);
    QList<QVariantList> rows;
    const QStringList names = rs.FieldNames();
    while (!rs.Eof()) {
        QVariantList row;
        for (const QString &n : names) {
            const QVariant v = rs.Field(n);
            row << (v.isNull() ? QVariant() : v);
        }
        rows << row;
        rs.MoveNext();
    }
    file.Close();
    return rows;
}

// A live measurement as the record holds it after a read: four traces with negative and odd
// counts, a view with a value of its own in every saved field, limits of 3 and 5 points.
void liveMeasurement()
{
    std::tie(st.freqstart, st.freqstop, st.pointcount) = std::tuple(30.0f, 1030.0f, 2001);
    for (int i = 0; i <= 2048; ++i) {
        st.sampledata[size_t(i)] = int16_t(-i);
        st.averagedata[size_t(i)] = int16_t(-i - 1);
        st.maxholddata[size_t(i)] = int16_t(i - 1000);
        st.memorydata[size_t(i)] = int16_t(7);
    }
    std::tie(st.centerfreq, st.reflevel, st.attenuator, st.bandwith, st.videofilter, st.span) =
        std::tuple(530.0f, -20.0f, 20.0f, 120, 3, 1000);
    st.unit = QStringLiteral("dBµV");
    st.configname = QStringLiteral("OATS 3 m");
    st.readmode = 2;
    st.correctionon = st.viewsample = st.viewaverage = st.viewb = st.viewlimitmax = st.tgon = 1;
    st.viewmaxhold = st.viewab = st.viewlimitave = 0;
    st.viewqpeak = 1;  // written as 0: live traces have no quasi-peak
    st.averagename = QStringLiteral("Class B AV");
    st.maxholdname = QStringLiteral("Class B QP");
    st.tglevel = -35.5f;
    st.lmaxdist = 3.5f;   // bytes in the file: halves to even
    st.lavedist = 10.4f;
    st.configdist = 2.5f;
    std::tie(st.lmaxlog, st.lavelog, st.grafikmin, st.grafikmax) = std::tuple(-1, 0, -300, 25);
    std::tie(st.limitnrave, st.limitnrmax) = std::pair(903, 905);
    st.headline = QStringLiteral("Lab 2, it's \"quoted\"");
    st.note = QStringLiteral("  first line\rsecond  ");
}

// The record as at a start, still on the test's application database.
void freshState()
{
    const Database db = st.db;
    resetState();
    st.db = db;
}

void writeMes(const QString &path)
{
    st.measurefile = path;
    QCOMPARE(CreateMeasurementFile(), uint8_t(0));
    WriteMeasurementFile();
}

}  // namespace

struct Pairing { int average; int maxhold; int rows; };
Q_DECLARE_METATYPE(Pairing)

class TestMeasurementFile : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    std::unique_ptr<test::TempProgramDir> program_;

    QString file(const QString &name) const { return dir_.filePath(name); }

private slots:
    void initTestCase() { setNowSource([] { return kSavedAt; }); }
    void cleanupTestCase() { setNowSource(nullptr); }
    void init()
    {
        resetState();
        resetPlotSources();
        program_ = std::make_unique<test::TempProgramDir>();
        st.db = OpenDatabase(program_->file(QStringLiteral("default.mdb")));
        addLimit(903, 3);
        addLimit(905, 5);
    }
    void cleanup()
    {
        ResumeNext on;
        on([] { st.db.Close(); });
        program_.reset();
    }

    void createdFileHasTheThreeTablesInColumnOrder()
    {
        const QString path = file(QStringLiteral("layout.mes"));
        st.measurefile = path + QStringLiteral("    ");  // the record's path may carry blanks
        QCOMPARE(CreateMeasurementFile(), uint8_t(0));
        const auto tables = rowsOf(path, QStringLiteral("select m.name as t, group_concat(p.name || ':' || p.type, ' ') as c "
                                                         "from sqlite_master m, pragma_table_info(m.name) p where m.type = 'table' "
                                                         "group by m.name order by m.rowid"));
        QCOMPARE(tables, (QList<QVariantList>{
            {QStringLiteral("Measurement"), QStringLiteral(
            "Frequency:FLOAT4 Sample_dBmW:FLOAT4 Average_dBmW:FLOAT4 Maxhold_dBmW:FLOAT4 QPeak_dBmW:FLOAT4 "
            "memory_dBmW:FLOAT4 Ambient_H_dBmW:FLOAT4 Ambient_V_dBmW:FLOAT4 H_Average_dBmW:FLOAT4 H_Maxhold_dBmW:FLOAT4 "
            "H_QPeak_dBmW:FLOAT4 V_Average_dBmW:FLOAT4 V_Maxhold_dBmW:FLOAT4 V_QPeak_dBmW:FLOAT4")},
            {QStringLiteral("Limitlines"), QStringLiteral("avefreq:FLOAT4 Average_dBmW:FLOAT4 maxfreq:FLOAT4 Maxhold_dBmW:FLOAT4")},
            {QStringLiteral("Settings"), QStringLiteral(
            "Vernr:SMALLINT dat:DATETIME centerfreq:FLOAT4 reflevel:FLOAT4 attenuator:FLOAT4 bandwith:SMALLINT "
            "videofilter:TINYINT span:SMALLINT unit:VARCHAR(20) correctionon:TINYINT "
            "configname:VARCHAR(80) readmode:TINYINT viewsample:TINYINT viewaverage:TINYINT "
            "viewmaxhold:TINYINT viewb:TINYINT viewqpeak:TINYINT viewlimitmax:TINYINT viewlimitave:TINYINT "
            "averagename:VARCHAR(80) maxholdname:VARCHAR(80) tgon:TINYINT tglevel:FLOAT4 "
            "Mode:TINYINT viewab:TINYINT lmaxdist:TINYINT lavedist:TINYINT lmaxlog:BOOLEAN lavelog:BOOLEAN "
            "configdist:TINYINT grafikmin:SMALLINT grafikmax:SMALLINT note:LONGTEXT "
            "headline:VARCHAR(80) Ambient:TINYINT")}}));
        QVERIFY(rowsOf(path, QStringLiteral("settings")).isEmpty());
    }

    void mesReadsBackFieldByField()
    {
        liveMeasurement();
        const QString path = file(QStringLiteral("live.mes"));
        writeMes(path);

        const auto points = rowsOf(path, QStringLiteral("measurement"));
        QCOMPARE(points.size(), 2001);
        // Frequency, Sample, Average, Maxhold, QPeak, memory, then eight columns never filled.
        QCOMPARE(points[0], (QVariantList{30.0, f(-0.4), f(-0.8), f(-399.6), 0.0, f(2.8), {}, {}, {}, {}, {}, {}, {}, {}}));
        QCOMPARE(points[2000].mid(0, 4), (QVariantList{1030.0, f(-2001 / 2.5), f(-2002 / 2.5), f(1001 / 2.5)}));

        const auto settings = rowsOf(path, QStringLiteral("settings"));
        QCOMPARE(settings.size(), 1);
        const QVariantList expected{100, kSavedAt, 530.0, -20.0, 20.0, 120, 3, 1000, QStringLiteral("dBµV").leftJustified(20),
                                    1, QStringLiteral("OATS 3 m"), 2, 1, 1, 0, 1, 0, 1, 0, QStringLiteral("Class B AV"),
                                    QStringLiteral("Class B QP"), 1, -35.5, 0, 0, 4, 10, true, false, 2, -300, 25,
                                    QStringLiteral("  first line\rsecond  "), QStringLiteral("Lab 2, it's \"quoted\""), {}};
        QCOMPARE(settings[0], expected);

        // Loading puts the view back; what the format loses stays lost.
        freshState();
        st.ambient = 0;
        st.limitnrmax = 17;
        st.measurefile = path;
        ReadMeasurementFile();
        QCOMPARE(std::tuple(st.filemode, st.pointcount, st.freqstart, st.freqstop, st.dat, st.centerfreq, st.bandwith,
                            st.videofilter, st.unit, st.viewqpeak, st.tglevel, st.maxholdname, st.headline),
                 std::tuple(uint8_t(1), 2001, 30.0f, 1030.0f, kSavedAt, 530.0f, int16_t(120), uint8_t(3),
                            QStringLiteral("dBµV").leftJustified(20), uint8_t(0), -35.5f, QStringLiteral("Class B QP"),
                            QStringLiteral("Lab 2, it's \"quoted\"")));
        QCOMPARE(std::tuple(st.lmaxdist, st.lavedist, st.configdist, st.lmaxlog, st.lavelog, st.grafikmin, st.grafikmax),
                 std::tuple(4.0f, 10.0f, 2.0f, int16_t(-1), int16_t(0), int16_t(-300), int16_t(25)));
        QCOMPARE(st.note, QStringLiteral("first line\rsecond"));
        // The mode is the .mes file's; it has no word on the ambient, and the limit drawn is its copy.
        QCOMPARE(std::tuple(st.mode, st.ambient, st.limitnrmax), std::tuple(uint8_t(0), uint8_t(0), int32_t(17)));
        QVERIFY(!st.measdb.isSet());
    }

    void limitsPairRowByRow_data()
    {
        QTest::addColumn<Pairing>("pairing");
        QTest::newRow("5 average, 3 max hold") << Pairing{5, 3, 5};
        QTest::newRow("max hold only") << Pairing{0, 3, 3};
        QTest::newRow("no limit chosen") << Pairing{0, 0, 0};
    }
    void limitsPairRowByRow()
    {
        QFETCH(Pairing, pairing);
        auto number = [](int points) { return points == 0 ? 0 : 900 + points; };
        st.limitnrave = number(pairing.average);
        st.limitnrmax = number(pairing.maxhold);
        st.pointcount = 0;
        const QString path = file(QStringLiteral("pairing.mes"));
        writeMes(path);
        const auto rows = rowsOf(path, QStringLiteral("limitlines"));
        QCOMPARE(rows.size(), pairing.rows);
        for (int k = 1; k <= pairing.rows; ++k) {
            const QVariantList &row = rows[k - 1];
            const QVariantList average = k <= pairing.average
                                             ? QVariantList{10.0 * k, double(-10 * k - st.limitnrave)}
                                             : QVariantList{{}, {}};
            const QVariantList maxhold = k <= pairing.maxhold
                                             ? QVariantList{10.0 * k, double(-10 * k - st.limitnrmax)}
                                             : QVariantList{{}, {}};
            QCOMPARE(row, average + maxhold);
        }
    }

    void zeroSpanGivesOneFrequency()
    {
        liveMeasurement();
        st.freqstart = st.freqstop = 100.0f;
        const QString path = file(QStringLiteral("zero.mes"));
        writeMes(path);
        const auto points = rowsOf(path, QStringLiteral("measurement"));
        QCOMPARE(std::tuple(points.size(), points.first()[0].toDouble(), points.last()[0].toDouble()),
                 std::tuple(qsizetype(2001), 100.0, 100.0));
        std::tie(st.freqstart, st.freqstop) = std::pair(1.0f, 2.0f);
        ReadMeasurementFile();
        QCOMPARE(std::pair(st.freqstart, st.freqstop), std::pair(100.0f, 100.0f));
    }

    // A Sweep + Step run (mode 2); a Step run's mode 1 comes back in tst_measurementmenu's load.
    void emcHeaderTakesTheTestsValues()
    {
        liveMeasurement();
        std::tie(st.freqstart, st.freqstop) = std::pair(30.0f, 230.0f);
        st.testname = QStringLiteral("  EN 55032 radiated  ");
        st.runmode = 0;
        st.detmaxhold = st.detqpeak = st.ambient = 1;
        st.detaverage = 0;
        const QString path = file(QStringLiteral("run.emc"));
        st.measurefile = path;
        QCOMPARE(CreateMeasurementFile(), uint8_t(0));
        WriteEmcHeader();
        QVERIFY(rowsOf(path, QStringLiteral("measurement")).isEmpty());
        QCOMPARE(rowsOf(path, QStringLiteral("limitlines")).size(), 5);
        const auto settings = rowsOf(path, QStringLiteral("settings"));
        QCOMPARE(settings.size(), 1);
        const QVariantList expected{101, kSavedAt, 30.0, -20.0, 20.0, 120, 0, 0, QStringLiteral("dBµV").leftJustified(20),
                                    1, QStringLiteral("  EN 55032 radiated  "), 0, 0, 0, 1, 1, 1, 1, 0,
                                    QStringLiteral("Class B AV"), QStringLiteral("Class B QP"), 0, 0.0, 2, 0, 4, 10,
                                    true, false, 2, 0, 0, QStringLiteral("  first line\rsecond  "),
                                    QStringLiteral("EN 55032 radiated"), 1};
        QCOMPARE(settings[0], expected);

        // The run adds its points; the load then takes the test's view and names the test.
        Database run = OpenDatabase(path);
        run.Execute(QStringLiteral("insert into measurement (Frequency, Sample_dBmW) values (230, 0), (30, 1), (130.5, 0)"));
        run.Close();
        freshState();
        st.ambient = 0;
        st.measurefile = path;
        ReadMeasurementFile();
        QCOMPARE(std::tuple(st.mode, st.ambient, st.testname, st.centerfreq, st.span, st.pointcount, st.freqstart, st.freqstop),
                 std::tuple(uint8_t(2), uint8_t(1), QStringLiteral("  EN 55032 radiated  "), 30.0f, int16_t(0), 3, 30.0f,
                            230.0f));
        // The unit is found in the unit table, with its offset.
        QCOMPARE(std::tuple(st.unit, st.unitoffset), std::tuple(QStringLiteral("dBµV"), 107.0f));
    }

    void fileWithoutSettingsRowFailsBeforeTakingAnything()
    {
        const QString path = file(QStringLiteral("empty.mes"));
        st.measurefile = path;
        QCOMPARE(CreateMeasurementFile(), uint8_t(0));
        QVERIFY_THROWS_EXCEPTION(VbError, ReadMeasurementFile());
        QCOMPARE(st.filemode, uint8_t(0));
        st.measurefile = file(QStringLiteral("missing.mes"));
        QVERIFY_THROWS_EXCEPTION(VbError, ReadMeasurementFile());
        QVERIFY(!QFile::exists(st.measurefile));  // a load never makes a file
    }

    void failedCreationLeavesTheOldFileAlone()
    {
        liveMeasurement();
        const QString path = file(QStringLiteral("kept.mes"));
        writeMes(path);
        // A path that can't be made: the writer afterwards adds nothing anywhere.
        st.measurefile = file(QStringLiteral("no/such/folder/x.mes"));
        QCOMPARE(CreateMeasurementFile(), uint8_t(1));
        WriteMeasurementFile();
        QVERIFY(!QFile::exists(st.measurefile));
        // Saving over an existing file replaces it, never adds to it.
        st.pointcount = 10;
        writeMes(path);
        QCOMPARE(std::pair(rowsOf(path, QStringLiteral("measurement")).size(), rowsOf(path, QStringLiteral("settings")).size()),
                 std::pair(qsizetype(10), qsizetype(1)));
        QVERIFY(!QFile::exists(path + QStringLiteral("-wal")));
    }

    // The plot's own scan reads what the writer writes.
    void plotDrawsAWrittenFile()
    {
        RecordingPlot plot;
        liveMeasurement();
        writeMes(file(QStringLiteral("drawn.mes")));
        ReadMeasurementFile();
        st.viewaverage = st.viewmaxhold = st.viewb = st.viewab = 0;
        std::tie(st.grafikmin, st.grafikmax) = std::pair(-1000, 0);
        DrawPlot();
        const auto sample = plot.p1.linesOf(2);
        QVERIFY(sample.size() >= 2000);
        QCOMPARE(std::pair(sample.front().y1, sample.front().y2), std::pair(-1.0, -2.0));
        QVERIFY(!plot.p1.linesOf(12).empty());  // the max hold limit from the file's copy
    }
};

QTEST_MAIN(TestMeasurementFile)
#include "tst_measurementfile.moc"
