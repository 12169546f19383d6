#include "levels/levelcount.h"
#include "sim/sampleblock.h"
#include "sim/settings.h"
#include "sim/signal.h"

#include <QtTest>
#include <algorithm>

using namespace kt;

namespace {
// Level in dBm that a byte stands for, by the program's own conversion.
double byteToDbm(uint8_t b, const SimSettings &s)
{
    return kw::rawtocount(b, s.dbperdiv, float(s.attenuator), float(s.reflevel)) / 2.5;
}
double median(QByteArray bytes)
{
    std::sort(bytes.begin(), bytes.end(), [](char a, char b) { return uint8_t(a) < uint8_t(b); });
    return uint8_t(bytes[bytes.size() / 2]);
}
uint8_t maxByte(const QByteArray &bytes)
{
    return uint8_t(*std::max_element(bytes.begin(), bytes.end(), [](char a, char b) { return uint8_t(a) < uint8_t(b); }));
}
SimSettings around(double centre, int span, int rbw = 120)
{
    SimSettings s;
    s.centerfreq = centre;
    s.span = span;
    s.bandwith = rbw;
    return s;
}
}  // namespace

class TestSimSignal : public QObject {
    Q_OBJECT
private slots:
    void blockLayout()
    {
        SimSignal signal;
        SimSettings s = around(133.5, 5);
        s.reflevel = -50;
        const QByteArray block = buildSampleBlock(s, signal, 1.0);
        QCOMPARE(std::tuple(block.size(), block.mid(kPoints + 17, 8)), std::tuple(kBlockSize, QByteArray("0133.500")));
        const uint32_t sum = levelChecksum(block.left(kPoints));
        const uint32_t sent = uint8_t(block[2044]) * 65536u + uint8_t(block[2045]) * 256u + uint8_t(block[2046]);
        QVERIFY(sent == sum && sum > 65535);  // all three bytes carry something
    }

    void byteScale()
    {
        SimSettings s;  // reference -30 dBm, attenuator 10 dB: the top of the screen is -20 dBm
        QCOMPARE((std::array{int(levelToByte(-20.0, s)), int(levelToByte(-30.0, s)), int(levelToByte(0.0, s)), int(levelToByte(-200.0, s))}),
                 (std::array{227, 202, 255, 0}));
        s.dbperdiv = 5;
        QCOMPARE(int(levelToByte(-30.0, s)), 177);
        // The program's conversion brings the level back within a byte step.
        QVERIFY(qAbs(byteToDbm(levelToByte(-37.3, s), s) - -37.3) <= 0.2);
    }

    void ambientStaysWhenTheDeviceIsOff()
    {
        SimSignal signal;
        const SimSettings comb = around(133.33, 1), fm = around(101.1, 1);
        const uint8_t combOn = maxByte(signal.traceBytes(comb, 0)), fmOn = maxByte(signal.traceBytes(fm, 0));
        signal.scene().dutOn = false;
        QVERIFY(maxByte(signal.traceBytes(comb, 0)) < combOn - 25);
        QVERIFY(qAbs(maxByte(signal.traceBytes(fm, 0)) - fmOn) <= 2);
        signal.scene().ambientOn = false;
        QVERIFY(maxByte(signal.traceBytes(fm, 0)) < fmOn - 50);
    }

    void maxHoldAndAverageAccumulateWhileCalculationRuns()
    {
        SimSignal signal;
        SimSettings s = around(520.0, 5);
        std::tie(s.calc, s.shown) = std::pair(1, 4);
        signal.restartCalc(0);
        signal.traceBytes(s, 0);
        const QByteArray early = signal.traceBytes(s, 0.05);
        QCOMPARE(signal.sweepsAccumulated(), 1);  // looking again does not sweep again
        const QByteArray held = signal.traceBytes(s, 5.0);
        // The sweeps that ran in 5 s, a little under ten a second with the retrace.
        const int sweeps = signal.sweepsAccumulated();
        QVERIFY2(sweeps >= 45 && sweeps <= 50, qPrintable(QString::number(sweeps)));
        QVERIFY(std::ranges::equal(held.left(kPoints), early.left(kPoints), [](char h, char e) { return uint8_t(h) >= uint8_t(e); }));
        // The pulsed carrier is caught in max hold and shows well above the average.
        s.shown = 3;
        const QByteArray average = signal.traceBytes(s, 5.0);
        QVERIFY(maxByte(held) - maxByte(average) > 10);
        // "#dm1" starts again.
        signal.restartCalc(5.0);
        QCOMPARE(signal.sweepsAccumulated(), 0);
    }

    // As a run's slice: the centre is set, the trace looked at a second later. Max Hold holds the
    // sweeps from the setting on, and as a sweep is never in step with a pulse of the device, it
    // holds the 10 ms pulse at 148.5 MHz at its peak whatever the phase of the first sweep.
    void maxHoldCatchesAPulseWhateverThePhase()
    {
        SimSignal signal;
        const uint8_t peak = maxByte(signal.traceBytes(around(148.5, 0, 400), 0));  // 1 s of samples: every pulse
        SimSettings s = around(148.5, 5, 400);
        s.calc = 1;
        s.shown = 4;
        SimSettings before = s;
        before.centerfreq = 143.5;
        const int atCarrier = 1000;  // 148.4988 MHz: the carrier lies in its bin
        for (int k = 0; k < 40; ++k) {
            const double start = 10.0 + k * 0.00025;  // first sweeps over a whole period of the pulse
            signal.followAxis(before, start - 1.0);
            signal.followAxis(s, start);
            const uint8_t held = uint8_t(signal.traceBytes(s, start + 1.0)[atCarrier - 1]);
            QVERIFY(signal.sweepsAccumulated() >= 9);
            QVERIFY2(held + 3 >= peak, qPrintable(QStringLiteral("start %1: %2 against %3").arg(start).arg(held).arg(peak)));
        }
    }

    // The generator's output stands as a flat line at its level over the bench; a 3400 has none.
    void trackingGeneratorLine()
    {
        SimSignal signal;
        SimSettings s = around(500, 1000, 400);
        std::tie(s.attenuator, s.reflevel, s.tgon, s.tglevel) = std::tuple(10, -30, 1, -40);
        const QByteArray on = signal.traceBytes(s, 0);
        QVERIFY(qAbs(byteToDbm(uint8_t(median(on)), s) - -40) <= 1.0);
        s.tgon = 0;
        QVERIFY(byteToDbm(uint8_t(median(signal.traceBytes(s, 0))), s) < -60);

        SettingsModel model3400(false);
        QVERIFY(!model3400.handle(QStringLiteral("#tg1")));
        QCOMPARE(model3400.settings().tgon, 0);
    }

    // Memories 0 to 9 are ten places; a recall brings back what was saved, the counters stay.
    void memoriesSaveAndRecall()
    {
        SettingsModel model(true);
        Settings &s = model.settings();
        for (const char *command : {"#sp100", "#sv0", "#sp5", "#sv9", "#dm1", "#sp1000"})
            model.handle(QString::fromLatin1(command));
        QCOMPARE(model.handle(QStringLiteral("#rc0")).value_or(QByteArray()), QByteArray("RD\r"));
        QCOMPARE(std::tuple(s.span, s.calcStarts), std::tuple(100, 1));
        model.handle(QStringLiteral("#rc9"));
        QCOMPARE(s.span, 5);
    }
};

QTEST_MAIN(TestSimSignal)
#include "tst_simsignal.moc"
