// Dates as days since 30 Dec 1899, and their texts.
#include "platform/vbformat.h"
#include "platform/vbpadding.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kw {

// ---------------------------------------------------------------------------------------------
// Dates

namespace {

constexpr double firstDate = -657434.0;  // 1 Jan 100
constexpr double afterLastDate = 2958466.0;  // 1 Jan 10000

struct DayTime {
    qint64 day = 0;  // days since 30 Dec 1899
    qint64 units = 0;  // of the time of day, 86400 or 86400000 to the day
    QDate date;
};

bool splitDate(double value, qint64 unitsPerDay, DayTime &out)
{
    if (!std::isfinite(value) || value < firstDate || value >= afterLastDate)
        return false;
    const double whole = std::trunc(value);
    out.day = qint64(whole);
    out.units = std::llround(std::fabs(value - whole) * double(unitsPerDay));
    if (out.units >= unitsPerDay) {
        out.units -= unitsPerDay;
        ++out.day;
    }
    out.date = QDate(1899, 12, 30).addDays(out.day);
    return true;
}

QString renderPattern(QStringView pattern, const DayTime &t, const NumberLocale &locale)
{
    const int seconds = int(t.units);
    const int hour = seconds / 3600;
    const QString &ampm = hour < 12 ? locale.am : locale.pm;
    QString out;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == QLatin1Char('\'')) {
            qsizetype end = pattern.indexOf(QLatin1Char('\''), i + 1);
            if (end < 0)
                end = pattern.size();
            out += end == i + 1 ? QStringView(u"'") : pattern.mid(i + 1, end - i - 1);
            i = end;
            continue;
        }
        if ((c == QLatin1Char('A') || c == QLatin1Char('a')) && i + 1 < pattern.size()
            && (pattern[i + 1] == QLatin1Char('P') || pattern[i + 1] == QLatin1Char('p'))) {
            out += c == QLatin1Char('a') ? ampm.toLower() : ampm;
            ++i;
            continue;
        }
        qsizetype run = 1;
        while (i + run < pattern.size() && pattern[i + run] == c)
            ++run;
        const int width = run >= 2 ? 2 : 1;
        switch (c.unicode()) {
        case 'd':
            if (run <= 2)
                appendPadded(out, t.date.day(), width);
            else
                out += t.date.toString(run == 3 ? QStringLiteral("ddd") : QStringLiteral("dddd"));
            break;
        case 'M':
            if (run <= 2)
                appendPadded(out, t.date.month(), width);
            else
                out += t.date.toString(run == 3 ? QStringLiteral("MMM") : QStringLiteral("MMMM"));
            break;
        case 'y':
            if (run >= 3)
                appendPadded(out, t.date.year(), 4);
            else
                appendPadded(out, t.date.year() % 100, width);
            break;
        case 'h':
            appendPadded(out, hour % 12 == 0 ? 12 : hour % 12, width);
            break;
        case 'H':
            appendPadded(out, hour, width);
            break;
        case 'm':
            appendPadded(out, seconds / 60 % 60, width);
            break;
        case 's':
            appendPadded(out, seconds % 60, width);
            break;
        case 't':
            out += run >= 2 ? ampm : ampm.left(1);
            break;
        default:
            out += pattern.mid(i, run);
        }
        i += run - 1;
    }
    return out;
}

}  // namespace

QString vbGeneralDate(double date, const NumberLocale &locale)
{
    DayTime t;
    if (!splitDate(date, 86400, t))
        return vbCStr(date, locale);
    if (t.day == 0)
        return renderPattern(locale.longTime, t, locale);
    if (t.units == 0)
        return renderPattern(locale.shortDate, t, locale);
    return renderPattern(locale.shortDate, t, locale) + QLatin1Char(' ')
        + renderPattern(locale.longTime, t, locale);
}

QString vbLongTime(double date, const NumberLocale &locale)
{
    DayTime t;
    if (!splitDate(date, 86400, t))
        return vbCStr(date, locale);
    return renderPattern(locale.longTime, t, locale);
}

QString vbShortDate(double date, const NumberLocale &locale)
{
    DayTime t;
    if (!splitDate(date, 86400, t))
        return vbCStr(date, locale);
    return renderPattern(locale.shortDate, t, locale);
}

double toOleDate(const QDateTime &dateTime)
{
    const double days = double(QDate(1899, 12, 30).daysTo(dateTime.date()));
    const double time = dateTime.time().msecsSinceStartOfDay() / 86400000.0;
    return days >= 0 ? days + time : days - time;
}

QDateTime fromOleDate(double date)
{
    DayTime t;
    if (!splitDate(date, 86400000, t))
        return {};
    return QDateTime(t.date, QTime::fromMSecsSinceStartOfDay(int(t.units)));
}

}  // namespace kw
