// Traces on the plot: the array scan with its peak and caption, and the three scans of a
// measurement table with the "Economic" thinning that keeps maxima.
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "plot/measurementtable.h"
#include "plot/drawplot.h"
#include "plot/filescan.h"
#include "plot/plotsources.h"
#include "plot/tracescan.h"
#include "shell/state.h"
#include "support/measfile.h"
#include "support/recordingplot.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace kw;
using kwtest::RecordingPlot;
using kwtest::measurementFile;

namespace {

std::vector<VectorRows::Row> flatRows(int n, float level = -50.0f)
{
    std::vector<VectorRows::Row> rows(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        rows[size_t(i)][kFrequency] = 30.0f + float(i) * 0.1f;
        for (int c = kSample; c < kMeasColumns; ++c)
            rows[size_t(i)][size_t(c)] = level;
    }
    return rows;
}

}  // namespace

struct ThinningCase { int rows; int economic; int span; int step; int lines; };

class TestTraceScans : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        resetPlotSources();
        kwtest::plotFrame(0.0f, 1000.0f);
    }
    void cleanup() { resetPlotSources(); }

    void arrayScanDrawsEveryPointAndFindsTheFirstPeak()
    {
        RecordingPlot plot;
        st.viewsample = st.viewmaxhold = 1;
        st.sampledata.fill(-200);
        st.maxholddata.fill(-190);
        st.sampledata[1001] = st.maxholddata[1001] = st.maxholddata[1500] = -100;  // the first peak counts
        scanArrays();
        // From the left edge to 2000/2001 of the width, not to the right edge.
        const auto sample = plot.p1.linesOf(2);
        QCOMPARE(std::tuple(sample.size(), plot.p1.linesOf(12).size(), sample.front().x1, sample.back().x2, st.peaklevel, st.peakfreq),
                 std::tuple(size_t(2000), size_t(2000), 0.0, std::trunc(2000.0 / 2001.0 * 1000000.0), int16_t(-100), float(1000.0 / 2001.0 * 1000.0)));
        QVERIFY(plot.memory == QStringLiteral("Mem B") && plot.buttons[0] && plot.buttons[1] && plot.buttons[2]);
    }

    void zeroSpanArraysRunAcrossWithoutTheAxis()
    {
        RecordingPlot plot;
        std::tie(st.span, st.freqstart, st.freqstop, st.viewsample, st.viewb) = std::tuple(0, 100.0f, 100.0f, 1, 1);
        st.sampledata.fill(-200);
        st.memorydata.fill(-300);
        st.memorydata[2001] = -120;
        scanArrays();
        // "CA = CF" has nothing to centre on.
        QCOMPARE(std::tuple(plot.p1.linesOf(3).size(), plot.p1.linesOf(2)[1].x1, plot.buttons[1], st.peakfreq),
                 std::tuple(size_t(2000), 1000000.0 / 2001.0, false, float(2000.0 * 1000000.0 / 2001.0)));
    }

    void captionNamesEveryShownTrace()
    {
        RecordingPlot plot;
        setNumberLocale(NumberLocale::enUS());
        // All traces off: the grid, no caption, no peak.
        st.viewsample = 0;
        st.sampledata[500] = 100;
        DrawPlot();
        QCOMPARE(std::tuple(plot.p1.linesOf(2).size(), plot.caption(), st.peaklevel, plot.p1.linesOf(7).empty()),
                 std::tuple(size_t(0), QString(), int16_t(-1000), false));
        st.viewsample = st.viewab = 1;
        std::tie(st.sampledate, st.memorydate) = std::pair(46000.5, 46000.75);  // noon and six
        DrawPlot();
        QCOMPARE(plot.caption(), QStringLiteral("Sam:12:00:00 PM   Mem:6:00:00 PM"));
    }

    void secondPassWhileOneRunsIsRefused()
    {
        RecordingPlot plot;
        st.drawbusy = 1;
        DrawPlot();
        QCOMPARE(plot.p1.clears, 0);
        st.drawbusy = 0;
        DrawPlot();
        // cursorfresh is set by the pass and taken by the cursors drawn at its end.
        QCOMPARE(std::tuple(plot.p1.clears, st.drawbusy, st.cursorfresh), std::tuple(1, uint8_t(0), uint8_t(0)));
    }

    void thinning_data()
    {
        QTest::addColumn<ThinningCase>("c");
        // Each read after the first row gives one line; the read at the end draws a dot.
        QTest::newRow("2749 rows: step 5, not thinned") << ThinningCase{2749, 1, 1000, 5, 2749};
        QTest::newRow("2750 rows: step 6 (5.5 to even), groups of 7") << ThinningCase{2750, 1, 1000, 6, 393};
        QTest::newRow("2750 rows without Economic") << ThinningCase{2750, 0, 1000, 6, 2750};
        QTest::newRow("an empty table counts 0 rows") << ThinningCase{0, 1, 1000, 0, 0};
        // The zero span scan neither thins nor counts: the step stays at its start value.
        QTest::newRow("zero span leaves the step") << ThinningCase{2750, 1, 0, 20, 2749};
    }
    void thinning()
    {
        QFETCH(ThinningCase, c);
        const auto &[rows, economic, span, step, lines] = c;
        RecordingPlot plot;
        std::tie(st.economic, st.span, st.viewsample, st.viewqpeak, st.filemode) = std::tuple(economic, span, 1, 0, 1);
        plotSources().measurementRows = [n = rows] { return std::make_unique<VectorRows>(flatRows(n)); };
        DrawPlot();
        QCOMPARE(std::pair(int(st.economicstep), int(plot.p1.linesOf(2).size())), std::pair(step, lines));
    }

    void thinningKeepsEachColumnsMaximum()
    {
        auto rows = flatRows(2800);
        rows[10][kSample] = -20.0f;  // inside the second group (rows 8..14)
        rows[12][kMaxhold] = -30.0f;
        rows[12][kAverage] = std::nullopt;  // an empty cell changes nothing
        rows[15][kSample] = rows[16][kSample] = 1e6f;  // outside sixteen bits
        MeasPoint point;
        VectorRows table(rows);
        readPoint(table, point);
        readNextPoint(table, point, true, 6);
        readNextPoint(table, point, true, 6);
        // -20 dB * 2.5, -30 dB, and the flat -50 dB, at the group's last frequency.
        QCOMPARE(std::tuple(point.level[kSample], point.level[kMaxhold], point.level[kAverage], point.frequency),
                 std::tuple(int16_t(-50), int16_t(-75), int16_t(-125), rows[14][kFrequency].value()));
        // A level outside sixteen bits keeps the old value.
        readNextPoint(table, point, false, 0);
        QCOMPARE(point.level[kSample], int16_t(-50));
    }

    void stemsShowOnlyAboveAmbientAndMargin()
    {
        RecordingPlot plot;
        st.mode = 2;
        kwtest::plotFrame(30.0f, 40.0f);
        st.viewmaxhold = st.viewqpeak = st.viewvertical = st.calcon = 1;
        st.calcoffset = 6;
        auto rows = flatRows(4, -1000.0f);
        for (auto &r : rows) {
            r[kSample] = 1.0f;            // marked for stepping
            r[kAmbientV] = -60.0f;        // -150 plot units, +15 margin: threshold -135
        }
        rows[0][kMaxhold] = -50.0f;       // -125: shown
        rows[0][kQPeak] = -55.0f;         // -137: below the threshold
        rows[1][kMaxhold] = -54.0f;       // -135: at the threshold, not shown
        rows[2][kSample] = 0.0f;          // not stepped: no stems at all
        rows[2][kMaxhold] = -40.0f;
        VectorRows table(rows);
        scanFile(table);
        const auto stems = plot.p1.linesOf(12);
        QCOMPARE(std::tuple(stems.size(), stems[0].y1, stems[0].y2, plot.p1.linesOf(5).size()), std::tuple(size_t(1), -250.0, -125.0, size_t(0)));
        // A margin whose plot units pass sixteen bits is passed over: the ambient alone decides.
        st.calcoffset = 20000;
        plot.p1.lines.clear();
        VectorRows again(rows);
        scanFile(again);
        QCOMPARE(std::pair(plot.p1.linesOf(12).size(), plot.p1.linesOf(5).size()), std::pair(size_t(2), size_t(1)));
    }

    void measurementFileIsReadInOrderAndAgainWhenItChanges()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("m.mes"));
        Database file = measurementFile(path);
        file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW) values (300, -30), (100, -10), (null, -99), (200, -20)"));
        auto table = readMeasurementTable(path);
        QVERIFY(table && table->rows.size() == 4);
        // An empty frequency sorts first.
        QCOMPARE(std::tuple(table->rows[0][kFrequency], table->rows[1][kSample], table->rows[3][kFrequency], table->rows[3][kAverage]),
                 std::tuple(std::optional<float>(), std::optional<float>(-10.0f), std::optional<float>(300.0f), std::optional<float>()));
        QCOMPARE(readMeasurementTable(path), table);  // unchanged: the same rows
        file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW) values (400, -40)"));
        QCOMPARE(readMeasurementTable(path)->rows.size(), size_t(5));
        file.Close();
        QVERIFY(!readMeasurementTable(dir.filePath(QStringLiteral("missing.mes"))));

        // A foreign table without some of the columns loses those lines only.
        const QString foreign = dir.filePath(QStringLiteral("foreign.mes"));
        Database other = measurementFile(foreign);
        other.Execute(QStringLiteral("drop table Measurement"));
        other.Execute(QStringLiteral("create table Measurement (Frequency real, Sample_dBmW real)"));
        other.Execute(QStringLiteral("insert into Measurement values (100, -10)"));
        other.Close();
        const auto partial = readMeasurementTable(foreign);
        QVERIFY(partial && partial->rows.at(0)[kSample] == -10.0f && !partial->rows.at(0)[kQPeak]);
    }

    void fileDrawsItsOwnLimitAndTracesWithoutButtonsOrPeak()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("f.mes"));
        Database file = measurementFile(path);
        file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW, Maxhold_dBmW) values "
                                    "(100, -80, -70), (500, -80, -70), (900, -80, -70)"));
        // The average limit has one row less: its cell in the last row stays empty.
        file.Execute(QStringLiteral("insert into Limitlines (avefreq, Average_dBmW, maxfreq, Maxhold_dBmW) values "
                                    "(100, -66, 100, -60), (900, -66, 500, -60), (null, null, 900, -60)"));
        file.Close();
        RecordingPlot plot;
        st.filemode = st.mode = st.viewsample = st.viewlimitmax = st.viewlimitave = 1;
        std::tie(st.viewqpeak, st.measurefile) = std::pair(0, path);
        DrawPlot();
        // Two segments and the dot at the end.
        // The max hold limit in two segments; sorted by avefreq the average limit's empty row comes
        // first and starts the walk from 0 MHz at 0 dB.
        const auto sample = plot.p1.linesOf(2), maxLimit = plot.p1.linesOf(12), aveLimit = plot.p1.linesOf(9);
        QCOMPARE(std::tuple(sample.size(), sample[0].y1, maxLimit.size(), maxLimit[0].y1, aveLimit.size(), aveLimit[1].y1),
                 std::tuple(size_t(3), -200.0, size_t(2), -150.0, size_t(2), -165.0));
        // Files track no peak.
        QVERIFY(!plot.buttons[0] && !plot.buttons[1] && !plot.buttons[2] && plot.memory == QStringLiteral("Sweep"));
        QVERIFY(plot.caption().startsWith(QStringLiteral("Measure date: ")) && st.peaklevel == -1000);
    }
};

QTEST_MAIN(TestTraceScans)
#include "tst_tracescans.moc"
