#include "levels/distance.h"
#include "levels/levelcount.h"
#include "levels/levelmath.h"
#include "levels/rangetrack.h"
#include "levels/units.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QtTest>

using namespace kw;

class TestLevels : public QObject {
    Q_OBJECT
private slots:
    void init() { resetState(); }

    void logarithmsHaveAFloor()
    {
        QCOMPARE(log10floor(0.0), -10.0);
        QCOMPARE(log10floor(1e-10), -10.0);  // the floor itself passes unchanged
        QVERIFY(qAbs(log10floor(2e-10) - std::log10(2e-10)) < 1e-12);
        QCOMPARE(db20(0.0), -200.0);
        QVERIFY(qAbs(undb20(db20(0.25)) - 0.25) < 1e-12);
    }

    void rawToCount_data()
    {
        QTest::addColumn<int>("raw");
        QTest::addColumn<int>("dbperdiv");
        QTest::addColumn<float>("attenuator");
        QTest::addColumn<float>("reflevel");
        QTest::addColumn<int>("count");
        QTest::newRow("top of screen") << 227 << 10 << 10.0f << -30.0f << -50;
        QTest::newRow("byte 0") << 0 << 10 << 10.0f << -30.0f << -277;
        QTest::newRow("5 dB/div truncates -113.5") << 100 << 5 << 10.0f << -30.0f << -113;
        QTest::newRow("5 dB/div merges 101 with 100") << 101 << 5 << 10.0f << -30.0f << -113;
        QTest::newRow("5 dB/div above the top") << 228 << 5 << 10.0f << -30.0f << -49;
        QTest::newRow("reference -27 truncates -42.5") << 227 << 10 << 10.0f << -27.0f << -42;
        QTest::newRow("positive top truncates down") << 227 << 10 << 0.0f << 5.5f << 13;
    }
    void rawToCount()
    {
        QFETCH(int, raw);
        QFETCH(int, dbperdiv);
        QFETCH(float, attenuator);
        QFETCH(float, reflevel);
        QFETCH(int, count);
        QCOMPARE(int(rawtocount(raw, dbperdiv, attenuator, reflevel)), count);
    }

    void correctionRoundsHalvesToEven_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<float>("db");
        QTest::addColumn<int>("result");
        QTest::newRow("no correction") << -50 << 0.0f << -50;
        QTest::newRow("-47.5 to -48") << -50 << 1.0f << -48;
        QTest::newRow("-46.5 to -46") << -49 << 1.0f << -46;
        // A single-precision 0.2 lies a hair above 0.2, so the sum is no tie.
        QTest::newRow("single 0.2 is no half") << -50 << 0.2f << -49;
    }
    void correctionRoundsHalvesToEven()
    {
        QFETCH(int, count);
        QFETCH(float, db);
        QFETCH(int, result);
        QCOMPARE(int(addcorrection(int16_t(count), db)), result);
    }

    void steppedDataAndPointFrequencies()
    {
        QCOMPARE(noisegate(49, 50), 0);
        QCOMPARE(noisegate(50, 50), 50);
        QCOMPARE(int(countstowholedb(-113)), -45);
        // Point 1 lies one step above the start, point 2001 on the stop.
        QVERIFY(qAbs(tracepointfreq(0.0f, 1000.0f, 2001, 1) - 1000.0f / 2001) < 1e-5f);
        QCOMPARE(tracepointfreq(0.0f, 1000.0f, 2001, 2001), 1000.0f);
    }

    void distanceLaw_data()
    {
        QTest::addColumn<float>("configdist");
        QTest::addColumn<float>("lmaxdist");
        QTest::addColumn<bool>("on");
        QTest::addColumn<double>("db");
        QTest::newRow("3 m against 10 m") << 3.0f << 10.0f << true << 10.457574905606752;
        QTest::newRow("equal") << 10.0f << 10.0f << true << 0.0;
        QTest::newRow("no configuration distance") << 0.0f << 10.0f << true << 0.0;
        QTest::newRow("no limit distance") << 3.0f << 0.0f << true << 0.0;
        QTest::newRow("correction off") << 3.0f << 10.0f << false << 0.0;
    }
    void distanceLaw()
    {
        QFETCH(float, configdist);
        QFETCH(float, lmaxdist);
        QFETCH(bool, on);
        QFETCH(double, db);
        QVERIFY(qAbs(distanceterm(configdist, lmaxdist, on) - db) < 1e-5);
    }

    void rangeTracking_data()
    {
        QTest::addColumn<int>("min0");
        QTest::addColumn<int>("max0");
        QTest::addColumn<QList<int>>("levels");
        QTest::addColumn<int>("min1");
        QTest::addColumn<int>("max1");
        QTest::newRow("first trace") << 1000 << -1000 << QList<int>{-277, -50, -120} << -287 << -40;
        QTest::newRow("inside by less than 10") << -100 << 0 << QList<int>{-95, -5} << -100 << 0;
        QTest::newRow("only the top moves") << -300 << -100 << QList<int>{-250, -60} << -300 << -50;
        QTest::newRow("flat trace opens to 100") << 1000 << -1000 << QList<int>{-50, -50} << -60 << 40;
        QTest::newRow("a trace well inside changes nothing") << -400 << 200 << QList<int>{-50} << -400 << 200;
    }
    void rangeTracking()
    {
        QFETCH(int, min0);
        QFETCH(int, max0);
        QFETCH(QList<int>, levels);
        QFETCH(int, min1);
        QFETCH(int, max1);
        st.grafikmin = int16_t(min0);
        st.grafikmax = int16_t(max0);
        RangeTrack r = beginrange();
        for (int v : levels)
            r.see(v);
        finishrange(r);
        QCOMPARE(int(st.grafikmin), min1);
        QCOMPARE(int(st.grafikmax), max1);
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
        st.unitoffset = 107.0f;
        QCOMPARE(shownlevelcount(-150), 47.0f);
        QCOMPARE(shownlevel(-60.0f), 47.0f);
        st.reflevel = -30.0f;
        st.attenuator = 10.0f;
        QCOMPARE(shownreflevel(), 87.0f);
        QCOMPARE(reflevelfromtyped(77.0f), -40.0f);
    }
};

QTEST_MAIN(TestLevels)
#include "tst_levels.moc"
