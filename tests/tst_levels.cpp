#include "levels/distance.h"
#include "levels/levelcount.h"
#include "levels/levelmath.h"
#include "levels/rangetrack.h"
#include "levels/units.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QtTest>

using namespace kw;

struct RangeTrackingCase { int min0; int max0; QList<int> levels; int min1; int max1; };

class TestLevels : public QObject {
    Q_OBJECT
private slots:
    void init() { resetState(); }

    void logarithmsHaveAFloor()
    {
        // The floor itself passes unchanged.
        QCOMPARE((std::array{log10floor(0.0), log10floor(1e-10), db20(0.0)}), (std::array{-10.0, -10.0, -200.0}));
        QVERIFY(qAbs(log10floor(2e-10) - std::log10(2e-10)) < 1e-12 && qAbs(undb20(db20(0.25)) - 0.25) < 1e-12);
    }

    // The top of the screen and byte 0; at 5 dB a division -113.5 truncates, 101 merges with 100
    // and 228 lies above the top; a reference of -27 truncates -42.5, a positive top truncates down.
    void rawToCount()
    {
        QCOMPARE(std::tuple(int(rawtocount(227, 10, 10.0f, -30.0f)), int(rawtocount(0, 10, 10.0f, -30.0f)),
                            int(rawtocount(100, 5, 10.0f, -30.0f)), int(rawtocount(101, 5, 10.0f, -30.0f)),
                            int(rawtocount(228, 5, 10.0f, -30.0f)), int(rawtocount(227, 10, 10.0f, -27.0f)),
                            int(rawtocount(227, 10, 0.0f, 5.5f))),
                 std::tuple(-50, -277, -113, -113, -49, -42, 13));
    }

    // -47.5 goes to -48 and -46.5 to -46; a single-precision 0.2 lies a hair above 0.2, so -49.5
    // is no tie.
    void correctionRoundsHalvesToEven()
    {
        QCOMPARE(std::tuple(int(addcorrection(-50, 1.0f)), int(addcorrection(-49, 1.0f)), int(addcorrection(-50, 0.2f))),
                 std::tuple(-48, -46, -49));
    }

    void steppedDataAndPointFrequencies()
    {
        QCOMPARE((std::array{noisegate(49, 50), noisegate(50, 50), int(countstowholedb(-113))}), (std::array{0, 50, -45}));
        // Point 1 lies one step above the start, point 2001 on the stop.
        QVERIFY(qAbs(tracepointfreq(0.0f, 1000.0f, 2001, 1) - 1000.0f / 2001) < 1e-5f);
        QCOMPARE(tracepointfreq(0.0f, 1000.0f, 2001, 2001), 1000.0f);
    }

    // 3 m against 10 m; no term for equal distances, without a configuration distance, or with
    // the correction off.
    void distanceLaw()
    {
        QVERIFY(qAbs(distanceterm(3.0f, 10.0f, true) - 10.457574905606752) < 1e-5);
        QCOMPARE(std::tuple(distanceterm(10.0f, 10.0f, true), distanceterm(0.0f, 10.0f, true), distanceterm(3.0f, 10.0f, false)),
                 std::tuple(0.0f, 0.0f, 0.0f));
    }

    void rangeTracking_data()
    {
        QTest::addColumn<RangeTrackingCase>("c");
        QTest::newRow("first trace") << RangeTrackingCase{1000, -1000, QList<int>{-277, -50, -120}, -287, -40};
        QTest::newRow("inside by less than 10") << RangeTrackingCase{-100, 0, QList<int>{-95, -5}, -100, 0};
        QTest::newRow("only the top moves") << RangeTrackingCase{-300, -100, QList<int>{-250, -60}, -300, -50};
        QTest::newRow("flat trace opens to 100") << RangeTrackingCase{1000, -1000, QList<int>{-50, -50}, -60, 40};
    }
    void rangeTracking()
    {
        QFETCH(RangeTrackingCase, c);
        const auto &[min0, max0, levels, min1, max1] = c;
        std::tie(st.grafikmin, st.grafikmax) = std::pair(int16_t(min0), int16_t(max0));
        RangeTrack r = beginrange();
        for (int v : levels)
            r.see(v);
        finishrange(r);
        QCOMPARE(std::tuple(int(st.grafikmin), int(st.grafikmax)), std::tuple(min1, max1));
    }

    void overflowIsARuntimeError()
    {
        QVERIFY_THROWS_EXCEPTION(VbError, rawtocount(227, 10, 0.0f, 20000.0f));
        QVERIFY_THROWS_EXCEPTION(VbError, addcorrection(32000, 400.0f));
        QCOMPARE(int(addcorrection(-32767, -0.5f)), -32768);
        int16_t lo = 0, hi = 0;
        QVERIFY_THROWS_EXCEPTION(VbError, applyrange(lo, hi, -32768, 0));
        QVERIFY_THROWS_EXCEPTION(VbError, applyrange(lo, hi, 0, 32760));
    }

    void unitsOnTheScreen()
    {
        std::tie(st.unitoffset, st.reflevel, st.attenuator) = std::tuple(107.0f, -30.0f, 10.0f);
        QCOMPARE((std::array{shownlevelcount(-150), shownlevel(-60.0f), shownreflevel(), reflevelfromtyped(77.0f)}),
                 (std::array{47.0f, 47.0f, 87.0f, -40.0f}));
    }
};

QTEST_MAIN(TestLevels)
#include "tst_levels.moc"
