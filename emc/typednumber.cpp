#include "emc/typednumber.h"

#include "platform/vbformat.h"

namespace kw {

double typedNumber(const QString &text)
{
    const NumberLocale &locale = numberLocale();
    QString mapped = text;
    for (QChar &c : mapped)
        if (c == QLatin1Char(',') || c == QLatin1Char('.'))
            c = locale.decimal;
    // The marks typed are decimal marks, never group separators.
    NumberLocale plain = locale;
    plain.group = QChar(0x1);
    return vbCDbl(mapped, plain);
}

}  // namespace kw
