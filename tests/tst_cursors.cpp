// The two cursors of the plot: read-outs as numbers, the lines a move draws, the mouse rules,
// the three buttons, and on screen a cursor dragged twice leaving the picture a fresh pass gives.
#include "platform/twips.h"
#include "plot/axes.h"
#include "plot/cursorbuttons.h"
#include "plot/cursormouse.h"
#include "plot/cursors.h"
#include "plot/drawplot.h"
#include "plot/grafik.h"
#include "plot/labelfont.h"
#include "plot/plotsources.h"
#include "shell/state.h"
#include "support/recordingplot.h"
#include "support/simfixture.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QMouseEvent>
#include <QtTest>

using namespace kw;

namespace {

void place(int32_t x1, int32_t y1, int32_t x2, int32_t y2)
{
    std::tie(st.cursor1x, st.cursor1y, st.cursor2x, st.cursor2y) = std::tuple(x1, y1, x2, y2);
}

QStringList shown()
{
    const CursorReadouts &r = cursorReadouts();
    return {r.freqa, r.leva, r.freqb, r.levb, r.freqab, r.levab};
}

// A left-button move over Picture1 at a plot position, as the mouse sends it.
void dragTo(QWidget *picture, Surface &surface, double x, double y)
{
    const QPointF at((x - surface.scaleLeft()) / surface.scaleWidth() * surface.deviceWidth(),
                     (y - surface.scaleTop()) / surface.scaleHeight() * surface.deviceHeight());
    QMouseEvent move(QEvent::MouseMove, at, picture->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(picture, &move);
}

}  // namespace

struct ReadoutCase { float start, stop, unitoffset; std::array<int32_t, 4> at; QStringList texts; };

class TestCursors : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        resetPlotSources();
    }

    // Read-outs of both cursors and their difference; an empty text is not looked at.
    void readouts_data()
    {
        QTest::addColumn<ReadoutCase>("c");
        const auto row = [](const char *name, float start, float stop, float offset, std::array<int32_t, 4> at,
                            QStringList texts) { QTest::newRow(name) << ReadoutCase{start, stop, offset, at, texts}; };
        row("unit moves levels only", 0, 1000, 107, {100000, -100, 200000, -150}, {"100.00M", "67.0", "200.00M", "47.0", "100.00M", "20.0"});
        row("one place: no difference, in the K form", 0, 1000, 0, {300000, -100, 300000, -100},
            {"", "", "", "", "0.0K", "0.0"});
        row("left of 0 Hz stops at 0", -100, 900, 0, {0, -100, 50000, -100}, {"0.0K", "", "0.0K", "", "", ""});
        // Cursor 2 takes its form from cursor 1, but below 1 MHz the K form wins.
        row("M form from cursor 1", 0, 2000, 0, {50000, -100, 750000, -100}, {"100.00M", "", "1500.00M", "", "1.400G", ""});
        row("G form from cursor 1", 0, 2000, 0, {750000, -100, 250000, -100}, {"1.500G", "", "0.500G", "", "", ""});
        row("K form below 1 MHz", 0, 2000, 0, {750000, -100, 250, -100}, {"", "", "500.0K", "", "", ""});
    }
    void readouts()
    {
        QFETCH(ReadoutCase, c);
        kwtest::RecordingPlot plot;
        kwtest::plotFrame(c.start, c.stop);
        st.unitoffset = c.unitoffset;
        place(c.at[0], c.at[1], c.at[2], c.at[3]);
        DrawCursors();
        const QStringList got = shown();
        for (int i = 0; i < 6; ++i)
            if (!c.texts[i].isEmpty())
                QCOMPARE(got[i], c.texts[i]);
    }

    void frequencyOnTheOtherAxes()
    {
        // Logarithmic: 100 kHz to 1 GHz as the last pass left the decades.
        std::tie(st.logaxis, st.span, st.decadelow, st.decadehigh) = std::tuple(1, 1000, 0.1f, 1000.0f);
        QCOMPARE(std::tuple(cursorFrequency(0), cursorFrequency(500000), cursorFrequency(1000000)),
                 std::tuple(0.1f, 10.0f, 1000.0f));

        // A live zero span has one frequency across, also with "Log" ticked.
        st.span = 0;
        st.freqstart = st.freqstop = 433.92f;
        QCOMPARE(cursorFrequency(900000), 433.92f);
        // A result of an EMC run with a span below 1 is not zero span: the linear form holds.
        std::tie(st.logaxis, st.mode, st.freqstart, st.freqstop) = std::tuple(0, 1, 30.0f, 40.0f);
        QCOMPARE(cursorFrequency(500000), 35.0f);
    }

    void levelsNeedAScaleAndCursorsStayOnThePlot()
    {
        kwtest::RecordingPlot plot;
        // Before any data the bottom (1000) lies above the top (-1000): no levels; a level clamps to the bottom.
        place(100000, 0, 200000, 0);
        DrawCursors();
        QCOMPARE(std::pair(shown(), st.cursor1y), std::pair(QStringList({"100.00M", "---", "200.00M", "---", "100.00M", "---"}), 1000));
        st.grafikmin = st.grafikmax = -100;
        DrawCursors();
        QCOMPARE(cursorReadouts().leva, QStringLiteral("---"));

        // Dragged beyond the edges: clamped, and the clamped place is where the lines stand.
        kwtest::plotFrame(0.0f, 1000.0f);
        place(1200000, 0, -5, -400);
        DrawCursors();
        QCOMPARE(std::tuple(st.cursor1x, st.cursor1y, st.cursor2x, st.cursor2y, st.cursor1oldx, st.cursor2oldy),
                 std::tuple(1000000, -50, 0, -250, 1000000, -250));
    }

    // A move redraws only the two crosshairs (old away, new drawn) and leaves the pens as it found them.
    void aMoveTouchesNothingElse()
    {
        kwtest::RecordingPlot plot;
        kwtest::plotFrame(0.0f, 1000.0f);
        st.viewsample = 1;
        place(100000, -100, 200000, -150);
        DrawPlot();
        const std::tuple before(plot.p1.clears, plot.p1.lines.size(), st.cursorfresh);
        place(400000, -120, 200000, -150);
        DrawCursors();
        QCOMPARE(std::tuple(plot.p1.clears, plot.p1.lines.size() - 8, st.cursorfresh), before);
        const auto &c1 = plot.p1.lines[std::get<1>(before)], &c2 = plot.p1.lines[std::get<1>(before) + 4];
        QCOMPARE(std::tuple(c1.colour, c1.style, c1.mode, c2.colour, c2.style), std::tuple(5, kStyleDash, kModeNotXorPen, 2, kStyleDot));
        QCOMPARE(std::tuple(plot.p1.drawMode, plot.p1.drawStyle, plot.cursorsShown), std::tuple(kModeCopyPen, kStyleSolid, 2));
    }

    void theMouseTakesAndHoldsACursor()
    {
        kwtest::RecordingPlot plot;
        kwtest::plotFrame(0.0f, 1000.0f);
        place(100000, -100, 105000, -150);  // both within reach of x 102000
        DrawCursors();
        // Hovering changes the pointer only; the reach is one per cent either side, not including its end.
        QCOMPARE(cursorMouseMove(false, 102000.4, -80), kPointerCursor);
        QCOMPARE(cursorMouseMove(false, 500000, -80), kPointerCrosshair);
        QCOMPARE(cursorMouseMove(false, 115000, -80), kPointerCrosshair);
        QCOMPARE(cursorMouseMove(false, 114999.9, -80), kPointerCursor);

        // Where both are near, cursor 1 is taken, and stays taken however far the mouse goes.
        QCOMPARE(cursorMouseMove(true, 102000.4, -80.5), kPointerCursor);
        QCOMPARE(std::tuple(st.cursorgrab, st.cursor1x, st.cursor1y), std::tuple(uint8_t(1), 102000, -80));  // y halves to even
        QCOMPARE(cursorMouseMove(true, 700000, -200), kPointerCursor);
        QCOMPARE(std::tuple(st.cursor1x, st.cursor2x), std::tuple(700000, 105000));

        // The first move with the button up lets go; a left-button move elsewhere takes nothing.
        QCOMPARE(cursorMouseMove(false, 900000, -200), kPointerCrosshair);
        QCOMPARE(cursorMouseMove(true, 900000, -200), kPointerCrosshair);
        QCOMPARE(std::tuple(st.cursorgrab, st.cursor1x), std::tuple(uint8_t(0), 700000));

        // Cursor 2 on its own, then let go by a right-button move, which moves nothing.
        QCOMPARE(cursorMouseMove(true, 108000, -90), kPointerCursor);
        QCOMPARE(std::tuple(st.cursorgrab, st.cursor2x), std::tuple(uint8_t(2), 108000));
        QCOMPARE(cursorMouseMove(false, 110000, -60), kPointerCursor);
        QCOMPARE(std::tuple(st.cursorgrab, st.cursor2x), std::tuple(uint8_t(0), 108000));

        // During a pass, or with the cursors off, the mouse does nothing at all.
        for (uint8_t busy : {1, 0}) {
            st.drawbusy = st.cursorsactive = busy;
            QCOMPARE(cursorMouseMove(true, 108000, -90), kPointerUnchanged);
        }
        QCOMPARE(st.cursorgrab, uint8_t(0));
    }

    void peakButtonFindsTheHighestPoint()
    {
        kwtest::RecordingPlot plot;
        kwtest::plotFrame(0.0f, 1000.0f);
        st.viewsample = 1;
        for (int i = 1; i <= 2001; ++i)
            st.sampledata[size_t(i)] = -200;
        st.sampledata[1201] = -90;
        st.sampledata[1501] = -90;  // as high, but later: the first stays
        DrawPlot();
        cursorToPeak();
        QVERIFY(std::abs(st.cursor1x - 600000) <= 500);
        QCOMPARE(std::tuple(st.cursor1y, cursorReadouts().leva), std::tuple(-90, QStringLiteral("-36.0")));

        // Logarithmic: the peak's place on the decades of the last pass.
        std::tie(st.logaxis, st.decadelow, st.decadehigh, st.peakfreq) = std::tuple(1, 0.1f, 1000.0f, 10.0f);
        cursorToPeak();
        QVERIFY(std::abs(st.cursor1x - 500000) <= 1);  // 0.1 is no exact float

        // Zero span: start and stop are one frequency, and the button leaves the cursor alone.
        st.logaxis = st.span = 0;
        st.freqstart = st.freqstop = 100.0f;
        st.cursor1x = 123456;
        cursorToPeak();
        QCOMPARE(st.cursor1x, 123456);
    }

    void centreButtons()
    {
        // Offline: the new centre is only clamped and kept.
        kwtest::plotFrame(0.0f, 1000.0f);
        st.cursor1x = 250000;
        centreOnCursor();
        QCOMPARE(st.centerfreq, 250.0f);
        for (int i = 0; i < 3; ++i)
            doubleCentre();
        QCOMPARE(st.centerfreq, 1050.0f);  // the analyser's top
        std::tie(st.span, st.freqstart) = std::pair(0, 88.5f);
        centreOnCursor();
        QCOMPARE(st.centerfreq, 88.5f);

        // On a logarithmic axis the lower edge is subtracted: cursor 1 reads 10 MHz, the new centre is 1 kHz.
        std::tie(st.span, st.logaxis, st.decadelow, st.decadehigh, st.cursor1x) = std::tuple(1000, 1, 0.1f, 1000.0f, 500000);
        centreOnCursor();
        QVERIFY(std::abs(st.centerfreq - 0.001f) < 1e-7f);
    }

    void withTheAnalyser()
    {
        SimBench bench;
        kwtest::RecordingPlot plot;
        // In EMC mode a double click does nothing; in normal mode it connects and reads.
        st.mode = 1;
        plotDoubleClick();
        QVERIFY(bench.log().isEmpty() && st.portopen == 0);
        st.mode = 0;
        plotDoubleClick();
        QCOMPARE(std::tuple(bench.log().contains(QStringLiteral("#bm1")), st.portopen, st.redrawflag), std::tuple(true, int16_t(1), uint8_t(1)));

        // The new centre goes out, the running calculation starts again, and a trace comes back.
        bench.clearLog();
        kwtest::plotFrame(0.0f, 1000.0f);
        st.calc = 1;
        st.cursor1x = 250000;
        centreOnCursor();
        const QStringList log = bench.log();
        QCOMPARE(log.mid(0, 2), QStringList({"#cf0250.000", "#dm1"}));
        QVERIFY(log.contains(QStringLiteral("#bm1")) && bench.shown().isEmpty());
    }

    void aCursorDraggedTwiceLeavesThePictureOfAFreshPass()
    {
        Grafik form;
        form.resize(900, 600);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        kwtest::plotFrame(0.0f, 1000.0f);
        st.viewsample = 1;
        for (int i = 1; i <= 2001; ++i)
            st.sampledata[size_t(i)] = int16_t(-230 + (i % 97 == 0 ? 120 : i % 7));
        auto &surface = static_cast<ImageSurface &>(form.picture1());
        QWidget *picture = form.pictureBox(1);

        place(100000, -100, 200000, -150);
        DrawPlot();
        const QImage start = surface.image().copy();
        // Take cursor 1 by its vertical line and drag it over the trace, twice.
        dragTo(picture, surface, 100000, -100);
        QCOMPARE(st.cursorgrab, uint8_t(1));
        dragTo(picture, surface, 400000, -200);
        dragTo(picture, surface, 700000, -120);
        QVERIFY(std::abs(st.cursor1x - 700000) <= 2000 && std::abs(st.cursor1y + 120) <= 1);
        const QImage dragged = surface.image().copy();
        QVERIFY(dragged != start);
        // The lines stand as a pass would draw them there, and no trace of the old lines remains.
        DrawPlot();
        QCOMPARE(surface.image(), dragged);
        QCOMPARE(form.findChild<QLabel *>(QStringLiteral("freqa"))->text(), cursorReadouts().freqa);
        QCOMPARE(form.findChild<QLabel *>(QStringLiteral("levb"))->text(), QStringLiteral("-60.0"));
    }

    void labelsFitAtEverySize()
    {
        Grafik form;
        form.resize(50, 50);
        QCOMPARE(form.size(), QSize(twipsToPixelsX(6000), twipsToPixelsY(4500)));
        // From the smallest plot the layout allows to a large one, the widest frequency label fits
        // between two grid lines and the widest level label before the ticks.
        for (int width : {twipsToPixelsX(6000 - 1800), 700, 1400}) {
            const QFont font = frequencyLabelFont(width);
            QVERIFY2(QFontMetricsF(font).horizontalAdvance(QStringLiteral("900.00M")) < width / 10.0,
                     qPrintable(QString::number(width)));
            QVERIFY(font.pixelSize() >= 7);
        }
        const QFont level = levelLabelFont(twipsToPixelsX(600), 400);
        QVERIFY(QFontMetricsF(level).horizontalAdvance(QStringLiteral("-120.0")) < twipsToPixelsX(600) * 0.8);
    }
};

QTEST_MAIN(TestCursors)
#include "tst_cursors.moc"
