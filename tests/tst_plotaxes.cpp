// The frame of the plot as numbers: decades of a logarithmic axis, frequency texts, the three
// frequency grids, the level grid and the captions beside the plot.
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
    void init() { resetState(); }

    void decades_data()
    {
        QTest::addColumn<DecadesCase>("c");
        QTest::newRow("start at or below 0.002") << DecadesCase{0.002f, 30.0f, 0.001f, 40.0f, 0.001f};
        QTest::newRow("between 9 and 10 of a decade jumps above the start") << DecadesCase{0.0095f, 1000.0f, 0.01f, 2000.0f, 0.01f};
        QTest::newRow("exactly a digit stands on that digit") << DecadesCase{3.0f, 1000.0f, 3.0f, 2000.0f, 1.0f};
        QTest::newRow("inside a decade rounds down to its digit") << DecadesCase{0.15f, 80.0f, 0.1f, 90.0f, 0.1f};
        QTest::newRow("stop on a digit goes to the next") << DecadesCase{30.0f, 300.0f, 30.0f, 400.0f, 10.0f};
    }
    void decades()
    {
        QFETCH(DecadesCase, c);
        const auto &[start, stop, low, high, step] = c;
        st.freqstart = start;
        st.freqstop = stop;
        ComputeDecades();
        QCOMPARE(std::tuple(st.decadelow, st.decadehigh, st.decadestep), std::tuple(low, high, step));
    }

    void decadesOfABrokenRangeEnd()
    {
        st.freqstart = std::numeric_limits<float>::quiet_NaN();
        st.freqstop = std::numeric_limits<float>::infinity();
        ComputeDecades();  // gives up instead of searching for ever
        QCOMPARE(st.decadehigh, 0.0f);
    }

    void frequencyToX_data()
    {
        QTest::addColumn<FrequencyToXCase>("c");
        QTest::newRow("linear quarter") << FrequencyToXCase{false, 750.0f, 250000.0};
        QTest::newRow("linear truncates") << FrequencyToXCase{false, 1.0f, 333.0};
        QTest::newRow("linear below start") << FrequencyToXCase{false, -1.0f, -333.0};
        QTest::newRow("log left edge") << FrequencyToXCase{true, 0.1f, 0.0};
        QTest::newRow("log 0 Hz is the left edge") << FrequencyToXCase{true, 0.0f, 0.0};
        QTest::newRow("log right edge") << FrequencyToXCase{true, 1000.0f, 1000000.0};
        QTest::newRow("log a decade in") << FrequencyToXCase{true, 1.0f, 250000.0};
    }
    void frequencyToX()
    {
        QFETCH(FrequencyToXCase, c);
        const auto &[log, frequency, x] = c;
        st.freqstart = 0.0f;
        st.freqstop = 3000.0f;
        st.logaxis = log;
        st.decadelow = 0.1f;
        st.decadehigh = 1000.0f;
        QVERIFY2(std::abs(FreqToX(frequency) - x) < 1e-3, qPrintable(QString::number(FreqToX(frequency), 'f', 3)));
    }

    void frequencyText_data()
    {
        QTest::addColumn<FrequencyTextCase>("c");
        QTest::newRow("below 1 MHz") << FrequencyTextCase{0.9999f, "999.9K", "Zerospan / Freq: 999.9K"};
        QTest::newRow("exactly 1 MHz") << FrequencyTextCase{1.0f, "1.00M", "Zerospan / Freq: 1.00M"};
        QTest::newRow("MHz") << FrequencyTextCase{433.92f, "433.92M", "Zerospan / Freq: 433.92M"};
        QTest::newRow("exactly 1000 MHz") << FrequencyTextCase{1000.0f, "1.000G", "Zerospan / Freq: 1.00G"};
        QTest::newRow("GHz") << FrequencyTextCase{1500.0f, "1.500G", "Zerospan / Freq: 1.50G"};
    }
    void frequencyText()
    {
        QFETCH(FrequencyTextCase, c);
        const auto &[frequency, text, zeroSpan] = c;
        setNumberLocale(NumberLocale::enUS());
        QCOMPARE(FormatFrequency(frequency), text);
        QCOMPARE(zeroSpanText(frequency), zeroSpan);
    }

    void linearGridBelowZeroHz()
    {
        RecordingPlot plot;
        plotFrame(-250.0f, 750.0f);
        SetPlotScale();
        DrawFrequencyGrid();
        // A thick black line marks 0 Hz at a quarter of the width, in place of the left label.
        const auto zero = plot.p1.linesOf(0);
        QCOMPARE(int(zero.size()), 1);
        QCOMPARE(zero[0].x1, 250000.0);
        QCOMPARE(zero[0].width, 2);
        // Tenths at -150 and -50 MHz lie left of the plot and are dropped.
        QCOMPARE(plot.p1.verticalsOf(7), 7);
        QCOMPARE(int(plot.p3.texts.size()), 8);
        QCOMPARE(plot.p3.texts.front().x, 300000.0);  // the first label is at 50 MHz, where it starts
        QCOMPARE(plot.p3.texts.front().colour, 5);
    }

    void logarithmicGrid()
    {
        RecordingPlot plot;
        setNumberLocale(NumberLocale::enUS());
        plotFrame(0.15f, 80.0f);
        st.logaxis = 1;
        SetPlotScale();
        QVERIFY(plot.logEnabled);
        DrawFrequencyGrid();
        // Digits 1..9 of the first decade, 2..9 of the next, 2..8 of the last below 90 MHz.
        QCOMPARE(plot.p1.verticalsOf(7), 24);
        QCOMPARE(plot.p1.verticalsOf(8), 2);
        QCOMPARE(plot.p3.textList(), QStringList({"100.0K", "1.00M", "10.00M", "90.00M"}));
    }

    void zeroSpanHasOnlyItsText()
    {
        RecordingPlot plot;
        setNumberLocale(NumberLocale::enUS());
        plotFrame(433.92f, 433.92f);
        st.logaxis = 1;  // zero span of a live plot wins over "Log"
        DrawFrequencyGrid();
        QCOMPARE(int(plot.p1.lines.size()), 0);
        QCOMPARE(plot.p3.textList(), QStringList({"Zerospan / Freq: 433.92M"}));
        QCOMPARE(plot.p3.texts[0].x, 1000.0);
        QCOMPARE(plot.p3.texts[0].y, 10.0);
        // A stepped result with a span below 1 takes the linear axis instead.
        st.mode = 1;
        st.logaxis = 0;
        QCOMPARE(frequencyAxis(), FreqAxis::Linear);
    }

    void logOfferedOnlyForADecade()
    {
        RecordingPlot plot;
        st.logaxis = 1;
        st.freqstart = 100.0f;
        st.freqstop = 900.0f;
        SetPlotScale();
        QVERIFY(!plot.logEnabled);
        QCOMPARE(st.logaxis, uint8_t(0));  // forgotten, not suspended
        st.freqstart = 10.0f;
        st.freqstop = 100.0f;
        SetPlotScale();
        QVERIFY(plot.logEnabled);
        QVERIFY(!plot.logChecked);
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
        setNumberLocale(NumberLocale::enUS());
        st.reflevel = reflevel;
        st.attenuator = 10.0f;
        st.dbperdiv = uint8_t(dbperdiv);
        st.unitoffset = unitoffset;
        st.grafikmax = int16_t(top);
        st.grafikmin = -250;
        SetPlotScale();
        DrawLevelGrid();
        QList<double> drawn, expected;
        for (const auto &l : plot.p1.linesOf(7))
            drawn << l.y1;
        std::sort(drawn.begin(), drawn.end(), std::greater<>());
        for (double y = firstLine; y >= -250; y -= dbperdiv * 2.5)
            expected << y;
        QCOMPARE(drawn, expected);
        QVERIFY(plot.p2.textList().contains(firstLabel));
        QCOMPARE(plot.p2.scaleTop(), double(top));
    }

    void noScaleYetDrawsNoLevelLines()
    {
        RecordingPlot plot;
        SetPlotScale();
        DrawLevelGrid();
        QCOMPARE(plot.p1.scaleHeight(), 2000.0);
        QCOMPARE(int(plot.p1.linesOf(7).size()), 0);
    }

    // Values from a garbled reply or an unfinished file: the drawing goes on and never hangs.
    void degenerateScales()
    {
        RecordingPlot plot;
        st.freqstart = st.freqstop = 100.0f;
        QCOMPARE(FreqToX(150.0f), 0.0);  // the failed division leaves 0
        st.grafikmax = -50;
        st.grafikmin = -250;
        SetPlotScale();
        st.grafikmax = st.grafikmin = 0;
        SetPlotScale();
        QCOMPARE(plot.p1.scaleHeight(), -200.0);  // a scale of no height is refused
        st.grafikmax = -50;
        st.grafikmin = -250;
        st.dbperdiv = 10;
        // Far below, the grid would never climb into the plot; far above, it hangs from the top.
        for (const auto &[reflevel, lines] : {std::pair{-1e30f, 0}, {-std::numeric_limits<float>::infinity(), 0}, {1e30f, 9}}) {
            plot.p1.lines.clear();
            st.reflevel = reflevel;
            DrawLevelGrid();
            QCOMPARE(int(plot.p1.linesOf(7).size()), lines);
        }
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
        setNumberLocale(NumberLocale::enUS());
        st.correctionon = uint8_t(correction);
        st.configdist = configdist;
        st.lmaxdist = limitdist;
        DistanceCaption();
        QCOMPARE(plot.distanceVisible, visible);
        if (visible)
            QCOMPARE(plot.distance, text);
    }
};

QTEST_MAIN(TestPlotAxes)
#include "tst_plotaxes.moc"
