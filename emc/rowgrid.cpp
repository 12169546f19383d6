#include "emc/rowgrid.h"

#include "platform/vbformat.h"

namespace kw {

double gridfrequency(double f) { return vbCDbl(vbFormat(f, QStringLiteral("0.000"))); }

QString rowcriterion(double f) { return QStringLiteral("frequency = ") + vbTrim(vbStr(gridfrequency(f))); }

QString rowsfrom(double f, double upto)
{
    // Half a kHz of margin: the stored frequencies are 32-bit floats of the rounded values.
    return QStringLiteral("select * from measurement where frequency >= %1 and frequency <= %2 order by frequency")
        .arg(f - 0.0005, 0, 'f', 4)
        .arg(upto + 0.0005, 0, 'f', 4);
}

}  // namespace kw
