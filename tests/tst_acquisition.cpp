// Trace acquisition against the simulator over a real pseudo-terminal.

#include "link/acquisition.h"
#include "link/connection.h"
#include "link/transport.h"
#include "shell/state.h"
#include "sim/sampleblock.h"
#include "support/simfixture.h"

#include <QtTest>

using namespace kw;

namespace {
kt::Options firmware(const QString &version)
{
    kt::Options o;
    o.firmware = version;
    return o;
}

// A recognisable ramp of level bytes.
QByteArray ramp()
{
    QByteArray levels(kt::kPoints, '\0');
    for (int i = 0; i < kt::kPoints; ++i)
        levels[i] = char((i * 7) % 256);
    return levels;
}

QByteArray stepBlock(double centre, const kt::BlockFaults &faults = {})
{
    kt::SimSettings s;
    s.centerfreq = centre;
    s.span = 0;
    return kt::sampleBlock(ramp(), s, faults);
}

void sendStep()
{
    st.command = QStringLiteral("#ss2");
    sendecho();
}
}  // namespace

class TestAcquisition : public QObject {
    Q_OBJECT
private slots:
    void selfSentBlockWithTrailerAndRd()
    {
        SimBench bench(firmware(QStringLiteral("1.70")));
        connectunit();
        sendStep();
        bench.sim().inject(stepBlock(123.45) + "RD\r");
        readstep();
        QVERIFY(bench.boxes().shown.empty());
        QCOMPARE(st.filemode, uint8_t(1));
        QCOMPARE(st.vmtrace, uint8_t(0));
        QCOMPARE(int(st.rawblock[1]), 0);
        QCOMPARE(int(st.rawblock[2]), 7);
        QCOMPARE(int(st.rawblock[2001]), (2000 * 7) % 256);  // left unconverted
        QCOMPARE(st.centerfreq, 123.45f);
        QCOMPARE(st.serialerror, uint8_t(0));
    }

    void oldFirmwareAtLineSpeedSendsNoRd()
    {
        SimBench bench(firmware(QStringLiteral("1.46")));
        connectunit();
        sendStep();
        bench.sim().inject(stepBlock(88.0));
        readstep();
        QVERIFY(bench.boxes().shown.empty());
        QCOMPARE(st.centerfreq, 88.0f);
        QCOMPARE(st.portopen, int16_t(1));
    }

    void missingRdAfterTheBlock()
    {
        SimBench bench(firmware(QStringLiteral("1.50")));
        connectunit();
        const float before = st.centerfreq;
        sendStep();
        bench.sim().inject(stepBlock(300.0) + "XX\r");
        readstep();
        QCOMPARE(bench.boxes().shown.size(), size_t(1));
        QCOMPARE(bench.boxes().shown[0].text, QStringLiteral("Wait for RD"));
        QCOMPARE(int(st.rawblock[2]), 7);  // the block is there
        QCOMPARE(st.centerfreq, before);   // the centre frequency is not taken
    }

    void wrongChecksumIsTakenInSilence()
    {
        SimBench bench(firmware(QStringLiteral("1.70")));
        connectunit();
        kt::BlockFaults bad;
        bad.wrongChecksum = true;
        sendStep();
        bench.sim().inject(stepBlock(400.0, bad) + "RD\r");
        readstep();
        QVERIFY(bench.boxes().shown.empty());
        QCOMPARE(st.centerfreq, 400.0f);
    }

    void blockCutShort()
    {
        SimBench bench(firmware(QStringLiteral("1.70")));
        connectunit();
        st.rawblock.fill(-1);
        kt::BlockFaults cut;
        cut.cutShortAt = 1500;
        sendStep();
        bench.sim().inject(stepBlock(400.0, cut));
        readstep();
        QCOMPARE(bench.boxes().shown.size(), size_t(1));
        QCOMPARE(bench.boxes().shown[0].text, QStringLiteral("Read Data"));
        QCOMPARE(st.portopen, int16_t(0));
        QCOMPARE(int(st.rawblock[1500]), (1499 * 7) % 256);
        QCOMPARE(int(st.rawblock[1501]), -1);
        QCOMPARE(st.centerfreq, 500.0f);
    }
};

QTEST_MAIN(TestAcquisition)
#include "tst_acquisition.moc"
