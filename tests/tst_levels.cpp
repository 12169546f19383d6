#include "levels/distance.h"
#include "levels/levelcount.h"
#include "levels/levelmath.h"
#include "levels/rangetrack.h"
#include "levels/units.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QtTest>

using namespace kw;

struct RawToCountCase { int raw; int dbperdiv; float attenuator; float reflevel; int count; };
struct CorrectionRoundsHalvesToEvenCase { int count; float db; int result; };
struct DistanceLawCase { float configdist; float lmaxdist; bool on; double db; };
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

    void rawToCount_data()
    {
        QTest::addColumn<RawToCountCase>("c");
        QTest::newRow("top of screen") << RawToCountCase{227, 10, 10.0f, -30.0f, -50};
        QTest::newRow("byte 0") << RawToCountCase{0, 10, 10.0f, -30.0f, -277};
        QTest::newRow("5 dB/div truncates -113.5") << RawToCountCase{100, 5, 10.0f, -30.0f, -113};
        QTest::newRow("5 dB/div merges 101 with 100") << RawToCountCase{101, 5, 10.0f, -30.0f, -113};
        QTest::newRow("5 dB/div above the top") << RawToCountCase{228, 5, 10.0f, -30.0f, -49};
        QTest::newRow("reference -27 truncates -42.5") << RawToCountCase{227, 10, 10.0f, -27.0f, -42};
        QTest::newRow("positive top truncates down") << RawToCountCase{227, 10, 0.0f, 5.5f, 13};
    }
    void rawToCount()
    {
        QFETCH(RawToCountCase, c);
        const auto &[raw, dbperdiv, attenuator, reflevel, count] = c;
        QCOMPARE(int(rawtocount(raw, dbperdiv, attenuator, reflevel)), count);
    }

    void correctionRoundsHalvesToEven_data()
    {
        QTest::addColumn<CorrectionRoundsHalvesToEvenCase>("c");
        QTest::newRow("no correction") << CorrectionRoundsHalvesToEvenCase{-50, 0.0f, -50};
        QTest::newRow("-47.5 to -48") << CorrectionRoundsHalvesToEvenCase{-50, 1.0f, -48};
        QTest::newRow("-46.5 to -46") << CorrectionRoundsHalvesToEvenCase{-49, 1.0f, -46};
        // A single-precision 0.2 lies a hair above 0.2, so the sum is no tie.
        QTest::newRow("single 0.2 is no half") << CorrectionRoundsHalvesToEvenCase{-50, 0.2f, -49};
    }
    void correctionRoundsHalvesToEven()
    {
        QFETCH(CorrectionRoundsHalvesToEvenCase, c);
        const auto &[count, db, result] = c;
        QCOMPARE(int(addcorrection(int16_t(count), db)), result);
    }

    void steppedDataAndPointFrequencies()
    {
        QCOMPARE((std::array{noisegate(49, 50), noisegate(50, 50), int(countstowholedb(-113))}), (std::array{0, 50, -45}));
        // Point 1 lies one step above the start, point 2001 on the stop.
        QVERIFY(qAbs(tracepointfreq(0.0f, 1000.0f, 2001, 1) - 1000.0f / 2001) < 1e-5f);
        QCOMPARE(tracepointfreq(0.0f, 1000.0f, 2001, 2001), 1000.0f);
    }

    void distanceLaw_data()
    {
        QTest::addColumn<DistanceLawCase>("c");
        QTest::newRow("3 m against 10 m") << DistanceLawCase{3.0f, 10.0f, true, 10.457574905606752};
        QTest::newRow("equal") << DistanceLawCase{10.0f, 10.0f, true, 0.0};
        QTest::newRow("no configuration distance") << DistanceLawCase{0.0f, 10.0f, true, 0.0};
        QTest::newRow("correction off") << DistanceLawCase{3.0f, 10.0f, false, 0.0};
    }
    void distanceLaw()
    {
        QFETCH(DistanceLawCase, c);
        const auto &[configdist, lmaxdist, on, db] = c;
        QVERIFY(qAbs(distanceterm(configdist, lmaxdist, on) - db) < 1e-5);
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
