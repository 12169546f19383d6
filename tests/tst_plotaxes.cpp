// The frame of the plot as numbers: decades, frequency texts, the frequency and level grids, the captions.
#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/grid.h"
#include "shell/state.h"
#include "support/recordingplot.h"

#include <QtTest>

using namespace kw;
using kwtest::RecordingPlot;
using kwtest::plotFrame;

struct DecadesCase { float start; float stop; float low; float high; float step; };
struct FrequencyToXCase { bool log; float frequency; double x; };
struct FrequencyTextCase { float frequency; QString text; QString zeroSpan; };
struct LevelGridCase { float reflevel; int dbperdiv; int top; float unitoffset; double firstLine; QString firstLabel; };
struct DistanceCaptionCase { int correction; float configdist; float limitdist; bool visible; QString text; };

class TestPlotAxes : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        setNumberLocale(NumberLocale::enUS());
    }

    void decades_data()
    {
        QTest::addColumn<DecadesCase>("c");
        QTest::newRow("start at or below 0.002") << DecadesCase{0.002f, 30.0f, 0.001f, 40.0f, 0.001f};
        QTest::newRow("between 9 and 10 of a decade jumps above the start") << DecadesCase{0.0095f, 1000.0f, 0.01f, 2000.0f, 0.01f};
        QTest::newRow("exactly a digit stands on that digit") << DecadesCase{3.0f, 1000.0f, 3.0f, 2000.0f, 1.0f};
        QTest::newRow("stop on a digit goes to the next") << DecadesCase{30.0f, 300.0f, 30.0f, 400.0f, 10.0f};
    }
    void decades()
    {
        QFETCH(DecadesCase, c);
        const auto &[start, stop, low, high, step] = c;
        std::tie(st.freqstart, st.freqstop) = std::pair(start, stop);
        ComputeDecades();
        QCOMPARE(std::tuple(st.decadelow, st.decadehigh, st.decadestep), std::tuple(low, high, step));
    }

    void frequencyToX_data()
    {
        QTest::addColumn<FrequencyToXCase>("c");
        QTest::newRow("linear truncates") << FrequencyToXCase{false, 1.0f, 333.0};
        QTest::newRow("linear below start") << FrequencyToXCase{false, -1.0f, -333.0};
        QTest::newRow("log 0 Hz is the left edge") << FrequencyToXCase{true, 0.0f, 0.0};
        QTest::newRow("log right edge") << FrequencyToXCase{true, 1000.0f, 1000000.0};
    }
    void frequencyToX()
    {
        QFETCH(FrequencyToXCase, c);
        const auto &[log, frequency, x] = c;
        std::tie(st.freqstart, st.freqstop, st.decadelow, st.decadehigh) = std::tuple(0.0f, 3000.0f, 0.1f, 1000.0f);
        st.logaxis = log;
        QVERIFY2(std::abs(FreqToX(frequency) - x) < 1e-3, qPrintable(QString::number(FreqToX(frequency), 'f', 3)));
    }

    void frequencyText_data()
    {
        QTest::addColumn<FrequencyTextCase>("c");
        QTest::newRow("below 1 MHz") << FrequencyTextCase{0.9999f, "999.9K", "Zerospan / Freq: 999.9K"};
        QTest::newRow("exactly 1 MHz") << FrequencyTextCase{1.0f, "1.00M", "Zerospan / Freq: 1.00M"};
        QTest::newRow("exactly 1000 MHz") << FrequencyTextCase{1000.0f, "1.000G", "Zerospan / Freq: 1.00G"};
    }
    void frequencyText()
    {
        QFETCH(FrequencyTextCase, c);
        const auto &[frequency, text, zeroSpan] = c;
        QCOMPARE(std::pair(FormatFrequency(frequency), zeroSpanText(frequency)), std::pair(text, zeroSpan));
    }

    void linearGridBelowZeroHz()
    {
        RecordingPlot plot;
        plotFrame(-250.0f, 750.0f);
        SetPlotScale();
        DrawFrequencyGrid();
        // A thick black line marks 0 Hz at a quarter of the width, in place of the left label.
        const auto zero = plot.p1.linesOf(0);
        QCOMPARE(std::tuple(zero.size(), zero[0].x1, zero[0].width), std::tuple(size_t(1), 250000.0, 2));
        // Tenths at -150 and -50 MHz lie left of the plot and are dropped; the first label is at 50 MHz.
        QCOMPARE(std::tuple(plot.p1.verticalsOf(7), plot.p3.texts.size(), plot.p3.texts.front().x, plot.p3.texts.front().colour),
                 std::tuple(7, size_t(8), 300000.0, 5));
    }

    void logarithmicGrid()
    {
        RecordingPlot plot;
        plotFrame(0.15f, 80.0f);
        st.logaxis = 1;
        SetPlotScale();
        DrawFrequencyGrid();
        // Digits 1..9 of the first decade, 2..9 of the next, 2..8 of the last below 90 MHz.
        QCOMPARE(std::tuple(plot.logEnabled, plot.p1.verticalsOf(7), plot.p1.verticalsOf(8)), std::tuple(true, 24, 2));
        QCOMPARE(plot.p3.textList(), QStringList({"100.0K", "1.00M", "10.00M", "90.00M"}));
    }

    void zeroSpanHasOnlyItsText()
    {
        RecordingPlot plot;
        plotFrame(433.92f, 433.92f);
        st.logaxis = 1;  // zero span of a live plot wins over "Log"
        DrawFrequencyGrid();
        QCOMPARE(std::pair(plot.p1.lines.size(), plot.p3.textList()), std::pair(size_t(0), QStringList({"Zerospan / Freq: 433.92M"})));
        // A stepped result with a span below 1 takes the linear axis instead.
        std::tie(st.mode, st.logaxis) = std::pair(1, 0);
        QCOMPARE(frequencyAxis(), FreqAxis::Linear);
    }

    void logOfferedOnlyForADecade()
    {
        RecordingPlot plot;
        st.logaxis = 1;
        std::tie(st.freqstart, st.freqstop) = std::pair(100.0f, 900.0f);
        SetPlotScale();
        QVERIFY(!plot.logEnabled && st.logaxis == 0);  // forgotten, not suspended
        std::tie(st.freqstart, st.freqstop) = std::pair(10.0f, 100.0f);
        SetPlotScale();
        QVERIFY(plot.logEnabled && !plot.logChecked);
    }

    void levelGrid_data()
    {
        QTest::addColumn<LevelGridCase>("c");
        QTest::newRow("anchored on the reference line") << LevelGridCase{-30.0f, 10, -40, 0.0f, -50.0, "-20.0"};
        QTest::newRow("5 dB doubles the lines") << LevelGridCase{-30.0f, 5, -50, 0.0f, -50.0, "-20.0"};
        QTest::newRow("reference above the plot hangs from the top") << LevelGridCase{-10.0f, 10, -40, 0.0f, -40.0, "-16.0"};
        QTest::newRow("unit offset changes only the labels") << LevelGridCase{-30.0f, 10, -50, 107.0f, -50.0, "87.0"};
    }
    void levelGrid()
    {
        QFETCH(LevelGridCase, c);
        const auto &[reflevel, dbperdiv, top, unitoffset, firstLine, firstLabel] = c;
        RecordingPlot plot;
        std::tie(st.reflevel, st.attenuator, st.dbperdiv, st.unitoffset, st.grafikmax, st.grafikmin) =
            std::tuple(reflevel, 10.0f, dbperdiv, unitoffset, top, -250);
        SetPlotScale();
        DrawLevelGrid();
        QList<double> drawn, expected;
        for (const auto &l : plot.p1.linesOf(7))
            drawn << l.y1;
        std::sort(drawn.begin(), drawn.end(), std::greater<>());
        for (double y = firstLine; y >= -250; y -= dbperdiv * 2.5)
            expected << y;
        QCOMPARE(drawn, expected);
        QVERIFY(plot.p2.textList().contains(firstLabel) && plot.p2.scaleTop() == double(top));
    }

    // No scale yet, or values from a garbled reply or an unfinished file: the drawing goes on and never hangs.
    void degenerateScales()
    {
        RecordingPlot plot;
        SetPlotScale();
        DrawLevelGrid();
        QCOMPARE(std::pair(plot.p1.scaleHeight(), plot.p1.linesOf(7).size()), std::pair(2000.0, size_t(0)));
        st.freqstart = st.freqstop = 100.0f;
        QCOMPARE(FreqToX(150.0f), 0.0);  // the failed division leaves 0
        std::tie(st.grafikmax, st.grafikmin) = std::pair(-50, -250);
        SetPlotScale();
        st.grafikmax = st.grafikmin = 0;
        SetPlotScale();
        QCOMPARE(plot.p1.scaleHeight(), -200.0);  // a scale of no height is refused
        std::tie(st.grafikmax, st.grafikmin, st.dbperdiv) = std::tuple(-50, -250, 10);
        // Far below, the grid would never climb into the plot; far above, it hangs from the top.
        for (const auto &[reflevel, lines] : {std::pair{-1e30f, 0}, {-std::numeric_limits<float>::infinity(), 0}, {1e30f, 9}}) {
            plot.p1.lines.clear();
            st.reflevel = reflevel;
            DrawLevelGrid();
            QCOMPARE(int(plot.p1.linesOf(7).size()), lines);
        }
        std::tie(st.freqstart, st.freqstop) = std::pair(std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity());
        ComputeDecades();  // gives up instead of searching for ever
        QCOMPARE(st.decadehigh, 0.0f);
    }

    void distanceCaption_data()
    {
        QTest::addColumn<DistanceCaptionCase>("c");
        QTest::newRow("offset to the limit's distance") << DistanceCaptionCase{1, 3.0f, 10.0f, true, "Distance from DUT:  3m offset -10.5dB"};
        QTest::newRow("same distance") << DistanceCaptionCase{1, 3.0f, 3.0f, true, "Distance from DUT:  3m"};
        QTest::newRow("limit without distance") << DistanceCaptionCase{1, 10.0f, 0.0f, true, "Distance from DUT:  10m"};
        QTest::newRow("correction off") << DistanceCaptionCase{0, 3.0f, 10.0f, false, ""};
        QTest::newRow("no distance") << DistanceCaptionCase{1, 0.0f, 10.0f, false, ""};
    }
    void distanceCaption()
    {
        QFETCH(DistanceCaptionCase, c);
        const auto &[correction, configdist, limitdist, visible, text] = c;
        RecordingPlot plot;
        std::tie(st.correctionon, st.configdist, st.lmaxdist) = std::tuple(correction, configdist, limitdist);
        DistanceCaption();
        QCOMPARE(std::pair(plot.distanceVisible, visible ? plot.distance : QString()), std::pair(visible, text));
    }
};

QTEST_MAIN(TestPlotAxes)
#include "tst_plotaxes.moc"
