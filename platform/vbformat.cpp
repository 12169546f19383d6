#include "platform/vbformat.h"
#include "platform/vbpadding.h"

#include <QLocale>
#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <climits>
#include <limits>
#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kw {

// ---------------------------------------------------------------------------------------------
// Locale

namespace {

NumberLocale &current()
{
    static NumberLocale locale = NumberLocale::system();
    return locale;
}

// The machine's short date may have a two-digit year; the program always showed four.
QString withFourDigitYear(const QString &pattern)
{
    if (pattern.contains(QLatin1String("yyyy")))
        return pattern;
    QString out = pattern;
    const qsizetype at = out.indexOf(QLatin1String("yy"));
    if (at >= 0)
        out.replace(at, 2, QLatin1String("yyyy"));
    return out;
}

// Qt's long time pattern may end in a time zone ("t"), which the program never showed.
QString withoutTimeZone(const QString &pattern)
{
    QString out;
    bool quoted = false;
    for (const QChar c : pattern) {
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        if (quoted || c != QLatin1Char('t'))
            out += c;
    }
    return out.trimmed();
}

}  // namespace

NumberLocale NumberLocale::system()
{
    const QLocale sys = QLocale::system();
    NumberLocale l;
    if (sys.language() == QLocale::C)
        return l;
    const QString decimal = sys.decimalPoint();
    const QString group = sys.groupSeparator();
    if (!decimal.isEmpty())
        l.decimal = decimal.at(0);
    l.group = group.isEmpty() ? QLatin1Char(' ') : group.at(0);
    l.shortDate = withFourDigitYear(sys.dateFormat(QLocale::ShortFormat));
    l.longTime = withoutTimeZone(sys.timeFormat(QLocale::LongFormat));
    if (!sys.amText().isEmpty())
        l.am = sys.amText();
    if (!sys.pmText().isEmpty())
        l.pm = sys.pmText();
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

const NumberLocale &numberLocale() { return current(); }
void setNumberLocale(const NumberLocale &locale) { current() = locale; }

void appendPadded(QString &out, long long number, int width)
{
    char buf[24];
    const auto res = std::to_chars(buf, buf + sizeof buf, number);
    for (int k = int(res.ptr - buf); k < width; ++k)
        out += QLatin1Char('0');
    out += QLatin1String(buf, res.ptr - buf);
}

// ---------------------------------------------------------------------------------------------
// Decimal digits of a value

namespace {

// value = 0.d[0]d[1]...d[n-1] x 10^point; no trailing zeros; n == 0 for zero.
struct Digits {
    std::array<char, 24> d{};
    int n = 0;
    int point = 0;
    char at(int i) const { return i >= 0 && i < n ? d[size_t(i)] : '0'; }
};

template <typename T>
constexpr int significantDigits = std::is_same_v<T, float> ? 7 : 15;

// Reads the digits and the exponent of to_chars' scientific form into digits/count; returns the
// decimal exponent.
int scientificDigits(const char *from, const char *to, char *digits, int capacity, int &count)
{
    count = 0;
    const char *p = from;
    for (; p < to && *p != 'e'; ++p) {
        if (*p >= '0' && *p <= '9' && count < capacity)
            digits[count++] = *p;
    }
    int exponent = 0;
    if (p < to) {
        ++p;
        if (p < to && *p == '+')
            ++p;
        std::from_chars(p, to, exponent);
    }
    return exponent;
}

// The runtime turned a value into 15 (double) or 7 (float) decimal digits before doing anything
// else with it; everything after that works on the decimal digits, so 2.675 stays 2.675. Its C
// runtime rounded an exact half of the last digit up (654322.25f gives "654322.3"), where
// to_chars would take it to even, so the digits are cut here from a longer expansion.
Digits digitsOf(double magnitude, int precision)
{
    constexpr int extra = 30;
    char buf[96];
    char all[48];
    int count = 0;
    auto res = std::to_chars(buf, buf + sizeof buf, magnitude, std::chars_format::scientific,
                             precision + extra - 1);
    const int exponent = scientificDigits(buf, res.ptr, all, int(sizeof all), count);
    Digits g;
    if (count < precision + extra)
        return g;
    bool up = all[precision] >= '5';
    if (all[precision] == '5' && std::all_of(all + precision + 1, all + count, [](char c) { return c == '0'; })) {
        // Just below the half or exactly on it: a double has at most 767 significant digits,
        // so this expansion is exact.
        char exact[800];
        char exactDigits[800];
        res = std::to_chars(exact, exact + sizeof exact, magnitude, std::chars_format::scientific, 780);
        scientificDigits(exact, res.ptr, exactDigits, int(sizeof exactDigits), count);
        up = count > precision && exactDigits[precision] >= '5';
    }
    std::copy(all, all + precision, g.d.begin());
    g.n = precision;
    g.point = exponent + 1;
    if (up) {
        int i = precision - 1;
        while (i >= 0 && g.d[size_t(i)] == '9')
            g.d[size_t(i--)] = '0';
        if (i < 0) {
            g.d[0] = '1';
            ++g.point;
        } else {
            ++g.d[size_t(i)];
        }
    }
    while (g.n > 0 && g.d[size_t(g.n - 1)] == '0')
        --g.n;
    if (g.n == 0)
        g.point = 0;
    return g;
}

template <typename T>
Digits digitsOf(T magnitude)
{
    return digitsOf(double(magnitude), significantDigits<T>);
}

// Keep the first `keep` digits, rounding the rest half away from zero.
void roundTo(Digits &g, int keep)
{
    if (keep >= g.n)
        return;
    if (keep < 0) {
        g.n = 0;
        g.point = 0;
        return;
    }
    const bool up = g.d[size_t(keep)] >= '5';
    g.n = keep;
    if (up) {
        int i = keep - 1;
        while (i >= 0 && g.d[size_t(i)] == '9')
            --i;
        if (i < 0) {
            g.d[0] = '1';
            g.n = 1;
            ++g.point;
        } else {
            ++g.d[size_t(i)];
            g.n = i + 1;
        }
    }
    while (g.n > 0 && g.d[size_t(g.n - 1)] == '0')
        --g.n;
    if (g.n == 0)
        g.point = 0;
}

// The runtime's own arithmetic raises errors instead of making these; if one slips through it is
// shown the way the classic C runtime printed it rather than as a plausible number.
template <typename T>
QString nonFiniteText(T value)
{
    if (std::isnan(value))
        return QStringLiteral("-1.#IND");
    return value < 0 ? QStringLiteral("-1.#INF") : QStringLiteral("1.#INF");
}

// Str and CStr share this; Str differs by the sign blank, the point and the dropped zero of 0.x.
template <typename T>
QString generalText(T value, QChar mark, bool strStyle)
{
    if (!std::isfinite(value))
        return nonFiniteText(value);
    constexpr int precision = significantDigits<T>;
    QString out;
    out.reserve(24);
    if (value < 0)
        out += QLatin1Char('-');
    else if (strStyle)
        out += QLatin1Char(' ');
    const Digits g = digitsOf(std::fabs(value));
    if (g.n == 0) {
        out += QLatin1Char('0');
        return out;
    }
    const int exponent = g.point - 1;
    if (exponent < -4 || exponent >= precision) {
        out += QLatin1Char(g.d[0]);
        if (g.n > 1) {
            out += mark;
            for (int i = 1; i < g.n; ++i)
                out += QLatin1Char(g.d[size_t(i)]);
        }
        out += QLatin1Char('E');
        out += QLatin1Char(exponent < 0 ? '-' : '+');
        appendPadded(out, std::abs(exponent), 2);
    } else if (g.point <= 0) {
        if (!strStyle)
            out += QLatin1Char('0');
        out += mark;
        for (int i = g.point; i < g.n; ++i)
            out += QLatin1Char(g.at(i));
    } else {
        for (int i = 0; i < std::max(g.n, g.point); ++i) {
            if (i == g.point)
                out += mark;
            out += QLatin1Char(g.at(i));
        }
    }
    return out;
}

}  // namespace

QString vbStr(double value) { return generalText(value, QLatin1Char('.'), true); }
QString vbStr(float value) { return generalText(value, QLatin1Char('.'), true); }
QString vbStr(int value) { return generalText(double(value), QLatin1Char('.'), true); }
QString vbCStr(double value, const NumberLocale &locale) { return generalText(value, locale.decimal, false); }
QString vbCStr(float value, const NumberLocale &locale) { return generalText(value, locale.decimal, false); }
QString vbCStr(int value, const NumberLocale &locale) { return generalText(double(value), locale.decimal, false); }

// ---------------------------------------------------------------------------------------------
// Format strings

namespace {

enum class Tok : uint8_t { IntDigit, FracDigit, ExpDigit, Point, Percent, Exponent, Literal };

struct Token {
    Tok kind;
    QString text;  // a literal's text; for Exponent "E+", "E-", "e+" or "e-"
};

struct Section {
    std::vector<Token> tokens;
    int intCount = 0;  // digit placeholders left of the point
    int intMin = 0;    // integer digits always printed (from the first 0 on)
    int fracCount = 0; // digit placeholders right of the point
    int fracMin = 0;   // fraction digits always printed (up to the last 0)
    int expMin = 1;    // exponent digits always printed
    int shift = 0;     // decimal shift: +2 for each %, -3 for each scaling comma
    bool grouping = false;
    bool scientific = false;
    bool empty = true;
};

enum class Named : uint8_t { None, General, GeneralDate, LongTime, ShortDate };

struct ParsedFormat {
    Named named = Named::None;
    std::vector<Section> sections;
};

bool isDigitPlaceholder(QChar c) { return c == QLatin1Char('0') || c == QLatin1Char('#'); }

Section parseSection(QStringView s)
{
    Section sec;
    sec.empty = s.isEmpty();
    bool afterPoint = false;
    bool inExponent = false;
    int firstIntZero = -1;
    int expZeros = 0;
    auto literal = [&sec](QStringView text) {
        if (!sec.tokens.empty() && sec.tokens.back().kind == Tok::Literal)
            sec.tokens.back().text += text;
        else
            sec.tokens.push_back({Tok::Literal, text.toString()});
    };
    for (qsizetype i = 0; i < s.size(); ++i) {
        const QChar c = s[i];
        switch (c.unicode()) {
        case '0':
        case '#':
            if (inExponent) {
                sec.tokens.push_back({Tok::ExpDigit, {}});
                expZeros += c == QLatin1Char('0');
            } else if (afterPoint) {
                sec.tokens.push_back({Tok::FracDigit, {}});
                ++sec.fracCount;
                if (c == QLatin1Char('0'))
                    sec.fracMin = sec.fracCount;
            } else {
                sec.tokens.push_back({Tok::IntDigit, {}});
                if (c == QLatin1Char('0') && firstIntZero < 0)
                    firstIntZero = sec.intCount;
                ++sec.intCount;
            }
            break;
        case '.':
            if (afterPoint || inExponent) {
                literal(s.mid(i, 1));
            } else {
                afterPoint = true;
                sec.tokens.push_back({Tok::Point, {}});
            }
            break;
        case ',': {
            // Between integer placeholders a comma asks for grouping; after the last one (or before
            // the point) each comma divides by a thousand.
            qsizetype end = i;
            while (end < s.size() && s[end] == QLatin1Char(','))
                ++end;
            if (afterPoint || inExponent || sec.intCount == 0)
                literal(s.mid(i, end - i));
            else if (end < s.size() && isDigitPlaceholder(s[end]))
                sec.grouping = true;
            else
                sec.shift -= 3 * int(end - i);
            i = end - 1;
            break;
        }
        case '%':
            sec.tokens.push_back({Tok::Percent, {}});
            sec.shift += 2;
            break;
        case 'E':
        case 'e':
            if (!inExponent && sec.intCount + sec.fracCount > 0 && i + 1 < s.size()
                && (s[i + 1] == QLatin1Char('+') || s[i + 1] == QLatin1Char('-'))) {
                inExponent = true;
                sec.scientific = true;
                sec.tokens.push_back({Tok::Exponent, s.mid(i, 2).toString()});
                ++i;
            } else {
                literal(s.mid(i, 1));
            }
            break;
        case '\\':
            if (i + 1 < s.size())
                literal(s.mid(++i, 1));
            break;
        case '"': {
            qsizetype end = s.indexOf(QLatin1Char('"'), i + 1);
            if (end < 0)
                end = s.size();
            literal(s.mid(i + 1, end - i - 1));
            i = end;
            break;
        }
        default:
            literal(s.mid(i, 1));
        }
    }
    sec.intMin = firstIntZero < 0 ? 0 : sec.intCount - firstIntZero;
    sec.expMin = std::max(expZeros, 1);
    return sec;
}

std::vector<Section> parseSections(QStringView format)
{
    std::vector<Section> sections;
    qsizetype start = 0;
    bool quoted = false;
    for (qsizetype i = 0; i <= format.size() && sections.size() < 4; ++i) {
        if (i == format.size() || (!quoted && format[i] == QLatin1Char(';'))) {
            sections.push_back(parseSection(format.mid(start, i - start)));
            start = i + 1;
        } else if (format[i] == QLatin1Char('"')) {
            quoted = !quoted;
        } else if (!quoted && format[i] == QLatin1Char('\\') && i + 1 < format.size()) {
            ++i;
        }
    }
    return sections;
}

ParsedFormat parseFormat(const QString &format)
{
    struct NamedFormat {
        const char *name;
        Named named;
        const char *sections;
    };
    static const NamedFormat namedFormats[] = {
        {"General Number", Named::General, ""},
        {"Fixed", Named::None, "0.00"},
        {"Standard", Named::None, "#,##0.00"},
        {"Percent", Named::None, "0.00%"},
        {"Scientific", Named::None, "0.00E+00"},
        {"Yes/No", Named::None, "\"Yes\";\"Yes\";\"No\""},
        {"True/False", Named::None, "\"True\";\"True\";\"False\""},
        {"On/Off", Named::None, "\"On\";\"On\";\"Off\""},
        {"General Date", Named::GeneralDate, ""},
        {"Long Time", Named::LongTime, ""},
        {"Short Date", Named::ShortDate, ""},
    };
    ParsedFormat parsed;
    if (format.isEmpty()) {
        parsed.named = Named::General;
        return parsed;
    }
    for (const NamedFormat &f : namedFormats) {
        if (format.compare(QLatin1String(f.name), Qt::CaseInsensitive) == 0) {
            parsed.named = f.named;
            if (f.named == Named::None)
                parsed.sections = parseSections(QString::fromLatin1(f.sections));
            return parsed;
        }
    }
    parsed.sections = parseSections(format);
    return parsed;
}

// Tables are formatted row by row with one or two format strings, so a few parsed ones are kept.
const ParsedFormat &parsedFormat(const QString &format)
{
    struct Entry {
        QString key;
        ParsedFormat value;
        bool used = false;
    };
    thread_local std::array<Entry, 8> cache;
    thread_local size_t next = 0;
    for (const Entry &e : cache) {
        if (e.used && e.key == format)
            return e.value;
    }
    Entry &e = cache[next];
    next = (next + 1) % cache.size();
    e.key = format;
    e.value = parseFormat(format);
    e.used = true;
    return e.value;
}

QString layout(const Section &sec, Digits g, bool minus, const NumberLocale &locale)
{
    if (g.n > 0)
        g.point += sec.shift;
    int exponent = 0;
    if (sec.scientific && g.n > 0) {
        exponent = g.point - sec.intCount;
        g.point = sec.intCount;
        roundTo(g, g.point + sec.fracCount);
        if (g.n > 0 && g.point > sec.intCount) {
            ++exponent;
            g.point = sec.intCount;
        }
    } else {
        roundTo(g, g.point + sec.fracCount);
    }

    std::string intDigits;
    for (int i = 0; i < g.point; ++i)
        intDigits += g.at(i);
    if (int(intDigits.size()) < sec.intMin)
        intDigits.insert(0, size_t(sec.intMin) - intDigits.size(), '0');
    const int intLength = int(intDigits.size());
    int fracShown = sec.fracMin;
    for (int j = 0; j < sec.fracCount; ++j) {
        if (g.at(g.point + j) != '0')
            fracShown = std::max(fracShown, j + 1);
    }

    QString out;
    out.reserve(intLength + sec.fracCount + 16);
    bool signPending = minus;
    auto sign = [&] {
        if (signPending) {
            out += QLatin1Char('-');
            signPending = false;
        }
    };
    auto intDigit = [&](int p) {
        out += QLatin1Char(intDigits[size_t(p)]);
        const int fromRight = intLength - 1 - p;
        if (sec.grouping && fromRight > 0 && fromRight % 3 == 0)
            out += locale.group;
    };
    int intSeen = 0;
    int fracSeen = 0;
    for (const Token &t : sec.tokens) {
        switch (t.kind) {
        case Tok::IntDigit: {
            sign();
            const int k = intSeen++;
            const int p = intLength - sec.intCount + k;
            if (k == 0) {
                // the first placeholder takes every digit the format has no room for
                for (int q = 0; q <= p; ++q)
                    intDigit(q);
            } else if (p >= 0) {
                intDigit(p);
            }
            break;
        }
        case Tok::Point:
            sign();
            if (sec.intCount == 0) {
                for (int q = 0; q < intLength; ++q)
                    intDigit(q);
            }
            out += locale.decimal;
            break;
        case Tok::FracDigit: {
            sign();
            const int j = fracSeen++;
            if (j < fracShown)
                out += QLatin1Char(g.at(g.point + j));
            break;
        }
        case Tok::Exponent:
            out += t.text[0];
            if (exponent < 0)
                out += QLatin1Char('-');
            else if (t.text[1] == QLatin1Char('+'))
                out += QLatin1Char('+');
            appendPadded(out, std::abs(exponent), sec.expMin);
            break;
        case Tok::ExpDigit:
            break;
        case Tok::Percent:
            out += QLatin1Char('%');
            break;
        case Tok::Literal:
            out += t.text;
            break;
        }
    }
    if (signPending)
        out.prepend(QLatin1Char('-'));
    return out;
}

template <typename T>
QString formatValue(T value, const QString &format, const NumberLocale &locale)
{
    if (!std::isfinite(value))
        return nonFiniteText(value);
    const ParsedFormat &f = parsedFormat(format);
    switch (f.named) {
    case Named::General:
        return generalText(value, locale.decimal, false);
    case Named::GeneralDate:
        return vbGeneralDate(double(value), locale);
    case Named::LongTime:
        return vbLongTime(double(value), locale);
    case Named::ShortDate:
        return vbShortDate(double(value), locale);
    case Named::None:
        break;
    }
    const std::vector<Section> &secs = f.sections;
    const Section *sec = &secs[0];
    bool minus = false;
    // The sign is chosen on the value before rounding: -0.4 in "0" gives "-0".
    if (value < 0) {
        if (secs.size() >= 2 && !secs[1].empty)
            sec = &secs[1];
        else
            minus = true;
    } else if (value == 0 && secs.size() >= 3 && !secs[2].empty) {
        sec = &secs[2];
    }
    return layout(*sec, digitsOf(std::fabs(value)), minus, locale);
}

}  // namespace

QString vbFormat(double value, const QString &format, const NumberLocale &locale)
{
    return formatValue(value, format, locale);
}
QString vbFormat(float value, const QString &format, const NumberLocale &locale)
{
    return formatValue(value, format, locale);
}
QString vbFormat(int value, const QString &format, const NumberLocale &locale)
{
    return formatValue(double(value), format, locale);
}

}  // namespace kw
