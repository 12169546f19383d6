// Limit lines: the walk's cut to the plot, the choice between one line and fifty pieces, the zero
// span level, and the widening of the level scale with its mix of dB and plot units.
#include "plot/axes.h"
#include "plot/drawplot.h"
#include "plot/limitwalk.h"
#include "plot/plotsources.h"
#include "shell/state.h"
#include "support/recordingplot.h"

#include <QtTest>

using namespace kw;
using kwtest::RecordingPlot;
using kwtest::plotFrame;

namespace {

LimitLine limitOf(std::vector<LimitRow> rows, int16_t logflag = 0)
{
    LimitLine l;
    l.rows = std::move(rows);
    l.logflag = logflag;
    return l;
}

}  // namespace

struct FormOfTheLineCase { bool logAxis; int logFlag; float f1; float l1; bool pieces; };
struct WideningCase { float level; int min; int max; };

class TestLimitWalk : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        resetPlotSources();
    }
    void cleanup() { resetPlotSources(); }

    void segmentsAreCutToThePlot()
    {
        RecordingPlot plot;
        plotFrame(100.0f, 200.0f);
        drawLimit(limitOf({{50.0f, -40.0f}, {150.0f, -60.0f}, {250.0f, -80.0f}}));
        const auto lines = plot.p1.linesOf(12);
        QCOMPARE(lines.size(), size_t(2));
        // From the left edge at its level there, -50 dB, to the right edge at -70 dB.
        QCOMPARE(std::tuple(lines[0].x1, lines[0].y1, lines[0].x2, lines[0].y2), std::tuple(0.0, -125.0, 500000.0, -150.0));
        QCOMPARE(std::tuple(lines[1].x2, lines[1].y2), std::tuple(1000000.0, -175.0));
        // The extent counts every row but the first, with the cut level of the last one.
        QCOMPARE(std::tuple(st.limitlow, st.limithigh), std::tuple(int16_t(-70), int16_t(-60)));
    }

    void segmentCutAtBothEndsEndsOffItsLine()
    {
        RecordingPlot plot;
        plotFrame(100.0f, 200.0f);
        drawLimit(limitOf({{0.0f, -40.0f}, {400.0f, -80.0f}}));
        const auto lines = plot.p1.linesOf(12);
        // The near end on the line at -50 dB; the far end cut with the moved near level and t
        // from the old start: -65 dB, where the straight line has -60 dB.
        QCOMPARE(std::tuple(lines.size(), lines[0].y1, lines[0].y2), std::tuple(size_t(1), -125.0, -162.0));
    }

    void rowsOutsideTheSpanDrawNothingYetCount()
    {
        RecordingPlot plot;
        plotFrame(100.0f, 200.0f);
        drawLimit(limitOf({{300.0f, -40.0f}, {400.0f, -30.0f}, {500.0f, -90.0f}}));
        QCOMPARE(std::tuple(plot.p1.lines.size(), st.limitlow, st.limithigh), std::tuple(size_t(0), int16_t(-90), int16_t(-30)));
        // A single row is neither drawn nor counted.
        std::tie(st.limitlow, st.limithigh) = std::pair(int16_t(2000), int16_t(-2000));
        drawLimit(limitOf({{150.0f, -40.0f}}));
        QCOMPARE(std::tuple(plot.p1.lines.size(), st.limitlow, st.limithigh), std::tuple(size_t(0), int16_t(2000), int16_t(-2000)));
    }

    void formOfTheLine_data()
    {
        QTest::addColumn<FormOfTheLineCase>("c");
        QTest::newRow("linear limit, linear axis") << FormOfTheLineCase{false, 0, 900.0f, -60.0f, false};
        QTest::newRow("log limit, log axis") << FormOfTheLineCase{true, -1, 900.0f, -60.0f, false};
        QTest::newRow("linear limit, log axis") << FormOfTheLineCase{true, 0, 900.0f, -60.0f, true};
        QTest::newRow("log limit, linear axis") << FormOfTheLineCase{false, -1, 900.0f, -60.0f, true};
        QTest::newRow("equal levels are always straight") << FormOfTheLineCase{true, 0, 900.0f, -40.0f, false};
        QTest::newRow("rows 0.0005 MHz apart are straight") << FormOfTheLineCase{true, 0, 100.0005f, -60.0f, false};
    }
    void formOfTheLine()
    {
        QFETCH(FormOfTheLineCase, c);
        const auto &[logAxis, logFlag, f1, l1, pieces] = c;
        RecordingPlot plot;
        plotFrame(10.0f, 1000.0f);
        st.logaxis = logAxis;
        ComputeDecades();
        drawLimit(limitOf({{100.0f, -40.0f}, {f1, l1}}, int16_t(logFlag)));
        const int n = int(plot.p1.linesOf(12).size());
        QVERIFY2(pieces ? n >= 49 && n <= 51 : n == 1, qPrintable(QString::number(n)));
    }

    // High up the band a step a kHz wide is narrower than fifty float steps: it still arrives.
    void aShortStepHighUpReachesItsFarEnd()
    {
        RecordingPlot plot;
        plotFrame(10.0f, 3000.0f);
        st.logaxis = 1;
        ComputeDecades();
        drawLimit(limitOf({{1000.0f, -40.0f}, {1000.0012f, -60.0f}}));
        const auto lines = plot.p1.linesOf(12);
        QCOMPARE(lines.empty() ? 0.0 : lines.back().y2, -150.0);
    }

    void logLimitOnALinearAxisBendsTheRightWay()
    {
        RecordingPlot plot;
        plotFrame(10.0f, 1000.0f);
        drawLimit(limitOf({{100.0f, -40.0f}, {1000.0f, -60.0f}}, -1));
        // Halfway in frequency a log-interpolated level has gone most of the way down already.
        const auto lines = plot.p1.linesOf(12);
        const auto mid = std::find_if(lines.begin(), lines.end(), [](const auto &l) { return l.x1 >= 555555; });
        QVERIFY(mid != lines.end());
        QVERIFY2(mid->y1 < -135, qPrintable(QString::number(mid->y1)));  // a straight line would be -125
    }

    void zeroSpanDrawsTheLevelAtTheFrequency()
    {
        RecordingPlot plot;
        plotFrame(150.0f, 150.0f);
        st.span = 0;
        drawLimit(limitOf({{100.0f, -40.0f}, {200.0f, -60.0f}}));
        const auto lines = plot.p1.linesOf(12);
        QCOMPARE(std::tuple(lines.size(), lines[0].x1, lines[0].y1, lines[0].x2, lines[0].y2, st.limithigh),
                 std::tuple(size_t(1), 0.0, -125.0, 1000000.0, -125.0, int16_t(-50)));
        // A file's limitlines has no columns the searches know: no line.
        LimitLine fromFile = limitOf({{100.0f, -40.0f}, {200.0f, -60.0f}});
        fromFile.searchable = false;
        plot.p1.lines.clear();
        drawLimit(fromFile);
        QCOMPARE(int(plot.p1.lines.size()), 0);
    }

    void widening_data()
    {
        QTest::addColumn<WideningCase>("c");
        // The scale is -20..-100 dB in plot units (-50..-250); the limit's extent is in dB.
        QTest::newRow("inside the plot") << WideningCase{-60.0f, -250, -50};
        QTest::newRow("above the top in dB widens the top to the dB value") << WideningCase{-40.0f, -250, -40};
        QTest::newRow("below the plot in plot units but not in dB stays") << WideningCase{-110.0f, -250, -50};
        QTest::newRow("below the bottom in dB widens") << WideningCase{-300.0f, -300, -50};
    }
    void widening()
    {
        QFETCH(WideningCase, c);
        const auto &[level, min, max] = c;
        RecordingPlot plot;
        plotFrame(0.0f, 1000.0f);
        st.viewlimitmax = st.viewlimitave = 1;
        // The average limit, 10 dB lower, is drawn after the max hold limit, thick.
        plotSources().limitRows = [level](bool maxHold) {
            const float l = maxHold ? level : -70.0f;
            return std::vector<LimitRow>{{100.0f, l}, {900.0f, l}};
        };
        DrawPlot();
        QCOMPARE(std::tuple(st.grafikmin, st.grafikmax), std::tuple(int16_t(min), int16_t(max)));
        // A restart repaints everything: the last pass holds one line of each limit only.
        const auto average = plot.p1.linesOf(9);
        QCOMPARE(std::tuple(plot.p1.linesOf(12).size(), average.size(), average[0].y1, average[0].width),
                 std::tuple(size_t(1), size_t(1), -175.0, 2));
    }

    void noScaleYetNoLimitAndNoWidening()
    {
        RecordingPlot plot;
        st.viewlimitmax = st.viewlimitave = 1;
        int asked = 0;
        plotSources().limitRows = [&asked](bool) {
            ++asked;
            return std::vector<LimitRow>{{100.0f, -40.0f}, {900.0f, -40.0f}};
        };
        DrawPlot();
        QCOMPARE(std::tuple(asked, st.grafikmin, st.grafikmax), std::tuple(0, int16_t(1000), int16_t(-1000)));
    }
};

QTEST_MAIN(TestLimitWalk)
#include "tst_limitwalk.moc"
