#include "sim/sampleblock.h"

#include <QString>

namespace kt {

uint32_t levelChecksum(const QByteArray &levels)
{
    uint32_t sum = 0;
    for (char c : levels)
        sum += uint8_t(c);
    return sum;
}

QByteArray blockTrailer(const SimSettings &s)
{
    const double cf = s.centerfreq < 0 ? 0.0 : s.centerfreq;
    QString text = QStringLiteral("KT3400 BLOCK  CF:");  // 17 characters before the frequency
    text += QString::asprintf("%08.3f", cf).left(8);
    text += QStringLiteral(" SP%1 BW%2 DB%3").arg(s.span).arg(s.bandwith).arg(s.dbperdiv);
    return text.leftJustified(kTrailerSize, QLatin1Char(' '), true).toLatin1();
}

QByteArray sampleBlock(const QByteArray &levels, const SimSettings &s, const BlockFaults &faults)
{
    QByteArray block = levels.left(kPoints).leftJustified(kPoints, '\0');
    block += blockTrailer(s);
    uint32_t sum = levelChecksum(block.left(kPoints));
    if (faults.wrongChecksum)
        sum += 1;
    block += char((sum >> 16) & 0xff);
    block += char((sum >> 8) & 0xff);
    block += char(sum & 0xff);
    block += char(13);
    if (faults.cutShortAt >= 0 && faults.cutShortAt < kBlockSize)
        block.truncate(faults.cutShortAt);
    return block;
}

QByteArray buildSampleBlock(const SimSettings &s, SimSignal &signal, double t, const BlockFaults &faults)
{
    return sampleBlock(signal.traceBytes(s, t), s, faults);
}

double stepSizeMHz(int bandwith)
{
    if (bandwith == 9)
        return 0.01;
    if (bandwith == 120)
        return 0.12;
    return 0.4;
}

}  // namespace kt
