// Judging against a limit segment and the quasi-peak of a zero-span block: the arithmetic the
// marks and the step results rest on, with the oddities users' files depend on.

#include "emc/blockeval.h"
#include "levels/levelmath.h"
#include "levels/quasipeak.h"
#include "levels/segmentlimit.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QtTest>
#include <cmath>

using namespace kw;

namespace {

// A raw byte for a whole-dB level at reflevel -30, attenuator 10, 10 dB a division: one raw
// step is one count, 2.5 counts a dB, the top (227) at -20 dBm.
int rawFor(int db) { return 227 + int(std::lround(db * 2.5)) + 50; }

void fillBlock(int db)
{
    for (int i = 1; i <= 2001; ++i)
        st.rawblock[size_t(i)] = int16_t(rawFor(db));
}

void blockSetup(float centre)
{
    resetState();
    std::tie(st.reflevel, st.attenuator, st.dbperdiv, st.centerfreq) = std::tuple(-30.0f, 10.0f, 10, centre);
    std::tie(st.noisevalue, st.correctionon, st.detqpeak, st.detaverage) = std::tuple(0, 0, 1, 1);
}

}  // namespace

class TestLevelsJudge : public QObject {
    Q_OBJECT
private slots:
    void segments()
    {
        // Flat, and narrower than 1 kHz: the low end's level, no division even at fH.
        QCOMPARE(segmentlimit(230.0f, 30.0f, 40.0f, 230.0f, 40.0f, false), 40.0f);
        QCOMPARE(segmentlimit(230.0f, 230.0f, 40.0f, 230.0f, 47.0f, false), 40.0f);
        QCOMPARE(segmentlimit(100.0f, 100.0f, 40.0f, 100.0005f, 47.0f, true), 40.0f);
        // Logarithmic: the straight line on a log axis through both ends.
        QCOMPARE(segmentlimit(0.15f, 0.15f, 66.0f, 0.5f, 56.0f, true), 66.0f);
        QVERIFY(std::abs(segmentlimit(0.5f, 0.15f, 66.0f, 0.5f, 56.0f, true) - 56.0f) < 1e-4f);
        QVERIFY(std::abs(segmentlimit(0.2739f, 0.15f, 66.0f, 0.5f, 56.0f, true) - 61.0f) < 0.01f);
        // Sloped linear: the width over the distance from the top, lH at fL, and fH divides by zero.
        QCOMPARE(segmentlimit(10.0f, 10.0f, 50.0f, 20.0f, 60.0f, false), 60.0f);
        QCOMPARE(segmentlimit(15.0f, 10.0f, 50.0f, 20.0f, 60.0f, false), 70.0f);
        QVERIFY_THROWS_EXCEPTION(VbError, segmentlimit(20.0f, 10.0f, 50.0f, 20.0f, 60.0f, false));
    }

    // A steady block gives its own level for all three detectors; the first sample does not
    // enter the model, which needs the rest to settle.
    void constantBlock()
    {
        blockSetup(100.0f);
        fillBlock(-40);
        const BlockResult r = evaluateblock(&tabledivisors);
        QVERIFY(r.peak == -40 && std::abs(r.average - -40.0) < 1e-9 && std::abs(r.qpeak - -40.0) < 1e-6);
    }

    // One high sample: the state charges by half the difference at once, then discharges by the
    // divisor of the band, the upper one from 30 MHz exactly. Marked rows keep their fixed
    // divisors whatever the table says.
    void singlePulse()
    {
        const double low = undb20(-60.0);
        const double high = undb20(-20.0);
        const double mid = low + (high - low) / 2;
        for (const auto &[centre, discharge] : {std::pair{30.0f, 1100.0}, {29.99f, 320.0}}) {
            blockSetup(centre);
            fillBlock(-60);
            st.rawblock[2000] = int16_t(rawFor(-20));
            const BlockResult r = evaluateblock(&tabledivisors);
            QCOMPARE(r.peak, -20);
            QVERIFY(std::abs(undb20(r.qpeak) - (mid - (mid - low) / discharge)) < 1e-12);
        }
        blockSetup(100.0f);
        std::tie(st.tauf1000, st.tent1000) = std::pair(8, 10);
        fillBlock(-60);
        st.rawblock[2001] = int16_t(rawFor(-20));
        QVERIFY(std::abs(undb20(evaluateblock(&fixeddivisors).qpeak) - mid) < 1e-12);
        QVERIFY(std::abs(undb20(evaluateblock(&tabledivisors).qpeak) - (low + (high - low) / 8)) < 1e-12);
        // Without the detector the model stands at 0, floored at -200 dB.
        st.detqpeak = 0;
        QCOMPARE(evaluateblock(&tabledivisors).qpeak, -200.0);
    }

    // Average is the mean of linear amplitudes: a pulse of 1 sample in 2001 hardly moves it.
    void averageOfAPulse()
    {
        blockSetup(100.0f);
        fillBlock(-60);
        st.rawblock[1000] = int16_t(rawFor(-20));
        const BlockResult r = evaluateblock(&fixeddivisors);
        const double expected = db20((2000 * undb20(-60.0) + undb20(-20.0)) / 2001);
        QVERIFY(std::abs(r.average - expected) < 1e-9 && r.average < -59.0);
        QVERIFY(r.qpeak > r.average && r.qpeak < r.peak);
    }
};

QTEST_MAIN(TestLevelsJudge)
#include "tst_levelsjudge.moc"
