// Placeholder until the formatting engine lands: enough for the shell to build.
#include "platform/vbformat.h"

#include <QLocale>
#include <cmath>

namespace kw {

namespace {
NumberLocale current = NumberLocale::system();
}

NumberLocale NumberLocale::system()
{
    NumberLocale l;
    l.decimal = QLocale::system().decimalPoint().at(0);
    l.group = QLocale::system().groupSeparator().isEmpty() ? QChar(' ') : QLocale::system().groupSeparator().at(0);
    return l;
}
NumberLocale NumberLocale::enUS() { return NumberLocale{}; }
NumberLocale NumberLocale::deDE()
{
    NumberLocale l;
    l.decimal = QLatin1Char(',');
    l.group = QLatin1Char('.');
    l.shortDate = QStringLiteral("dd.MM.yyyy");
    l.longTime = QStringLiteral("HH:mm:ss");
    return l;
}
const NumberLocale &numberLocale() { return current; }
void setNumberLocale(const NumberLocale &locale) { current = locale; }

QString vbFormat(double value, const QString &format, const NumberLocale &locale)
{
    const int dot = format.indexOf(QLatin1Char('.'));
    const int places = dot < 0 ? 0 : int(format.size() - dot - 1);
    QString s = QString::number(value, 'f', places);
    s.replace(QLatin1Char('.'), locale.decimal);
    return s;
}
QString vbFormat(float value, const QString &format, const NumberLocale &locale) { return vbFormat(double(value), format, locale); }
QString vbFormat(int value, const QString &format, const NumberLocale &locale) { return vbFormat(double(value), format, locale); }
QString vbStr(double value) { return (value >= 0 ? QStringLiteral(" ") : QString()) + QString::number(value, 'g', 15); }
QString vbStr(float value) { return (value >= 0 ? QStringLiteral(" ") : QString()) + QString::number(value, 'g', 7); }
QString vbCStr(double value, const NumberLocale &) { return QString::number(value, 'g', 15); }
QString vbCStr(float value, const NumberLocale &) { return QString::number(value, 'g', 7); }
double vbVal(const QString &text) { return text.toDouble(); }
double vbCDbl(const QString &text, const NumberLocale &) { return text.toDouble(); }
int16_t vbCInt(double value) { return int16_t(std::nearbyint(value)); }
int32_t vbCLng(double value) { return int32_t(std::nearbyint(value)); }
uint8_t vbCByte(double value) { return uint8_t(std::nearbyint(value)); }
QString vbTrim(const QString &text) { return vbLTrim(vbRTrim(text)); }
QString vbLTrim(const QString &text)
{
    int i = 0;
    while (i < text.size() && text[i] == QLatin1Char(' '))
        ++i;
    return text.mid(i);
}
QString vbRTrim(const QString &text)
{
    int n = int(text.size());
    while (n > 0 && text[n - 1] == QLatin1Char(' '))
        --n;
    return text.left(n);
}
bool vbLike(const QString &text, const QString &pattern, bool) { return text.compare(pattern, Qt::CaseInsensitive) == 0; }
QString vbGeneralDate(double, const NumberLocale &) { return {}; }
QString vbLongTime(double, const NumberLocale &) { return {}; }

}  // namespace kw
