#include "platform/vbformat.h"

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

void appendPadded(QString &out, long long number, int width)
{
    char buf[24];
    const auto res = std::to_chars(buf, buf + sizeof buf, number);
    for (int k = int(res.ptr - buf); k < width; ++k)
        out += QLatin1Char('0');
    out += QLatin1String(buf, res.ptr - buf);
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

// ---------------------------------------------------------------------------------------------
// Text to number

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

enum class Range { Ok, Overflow };

// The longest decimal number at the start of s ("-12.5E3", ".5", "1D2", "7."): the characters used,
// 0 if there is none. A value beyond the double range reports Overflow; one below it gives 0.
size_t scanDecimal(std::string_view s, double &value, Range &range)
{
    value = 0;
    range = Range::Ok;
    std::string text;
    size_t i = 0;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-'))
        negative = s[i++] == '-';
    if (negative)
        text += '-';
    int digits = 0;
    int magnitude = 0;   // decimal exponent of the leading significant digit, plus one
    bool significant = false;
    for (; i < s.size() && isDigit(s[i]); ++i, ++digits) {
        text += s[i];
        significant = significant || s[i] != '0';
        magnitude += significant;
    }
    if (i < s.size() && s[i] == '.') {
        size_t j = i + 1;
        std::string fraction;
        for (; j < s.size() && isDigit(s[j]); ++j) {
            fraction += s[j];
            if (!significant && s[j] == '0')
                --magnitude;
            significant = significant || s[j] != '0';
        }
        if (digits + int(fraction.size()) > 0) {
            digits += int(fraction.size());
            if (!fraction.empty())
                text += '.' + fraction;
            i = j;
        }
    }
    if (digits == 0)
        return 0;
    if (i < s.size() && (s[i] == 'E' || s[i] == 'e' || s[i] == 'D' || s[i] == 'd')) {
        size_t j = i + 1;
        bool expNegative = false;
        if (j < s.size() && (s[j] == '+' || s[j] == '-'))
            expNegative = s[j++] == '-';
        long exponent = 0;
        const size_t expStart = j;
        for (; j < s.size() && isDigit(s[j]); ++j)
            exponent = std::min(exponent * 10 + (s[j] - '0'), 100000L);
        if (j > expStart) {
            text += expNegative ? "e-" : "e";
            text += std::to_string(exponent);
            magnitude += int(expNegative ? -exponent : exponent);
            i = j;
        }
    }
    const auto res = std::from_chars(text.data(), text.data() + text.size(), value);
    if (res.ec == std::errc::result_out_of_range) {
        value = negative ? -0.0 : 0.0;
        if (significant && magnitude > 0)
            range = Range::Overflow;
    }
    return i;
}

// "&H..." or "&O...": up to FFFF an Integer, up to FFFFFFFF a Long, both signed.
size_t scanRadix(std::string_view s, double &value)
{
    value = 0;
    if (s.size() < 2 || s[0] != '&')
        return 0;
    const char kind = s[1];
    const int base = (kind == 'H' || kind == 'h') ? 16 : (kind == 'O' || kind == 'o') ? 8 : 0;
    if (base == 0)
        return 0;
    uint64_t exact = 0;
    double approx = 0;
    size_t i = 2;
    for (; i < s.size(); ++i) {
        const char c = s[i];
        int d = -1;
        if (isDigit(c))
            d = c - '0';
        else if (base == 16 && c >= 'a' && c <= 'f')
            d = c - 'a' + 10;
        else if (base == 16 && c >= 'A' && c <= 'F')
            d = c - 'A' + 10;
        if (d < 0 || d >= base)
            break;
        if (exact <= (UINT64_MAX >> 4))
            exact = exact * uint64_t(base) + uint64_t(d);
        approx = approx * base + d;
    }
    if (i == 2)
        return 0;
    if (approx <= 0xFFFF)
        value = exact >= 0x8000 ? double(exact) - 65536.0 : double(exact);
    else if (approx <= 0xFFFFFFFFu)
        value = exact >= 0x80000000u ? double(exact) - 4294967296.0 : double(exact);
    else
        value = approx;
    return i;
}

char ascii(QChar c) { return c.unicode() < 128 ? char(c.unicode()) : '\x7f'; }

}  // namespace

double vbVal(const QString &text)
{
    std::string s;
    s.reserve(size_t(text.size()));
    for (const QChar c : text) {
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n'))
            s += ascii(c);
    }
    double value = 0;
    if (!s.empty() && s[0] == '&') {
        scanRadix(s, value);
        return value;
    }
    Range range;
    scanDecimal(s, value, range);
    if (range == Range::Overflow)
        return s[0] == '-' ? -DBL_MAX : DBL_MAX;
    return value;
}

double vbCDbl(const QString &text, const NumberLocale &locale)
{
    auto blank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && blank(text[from]))
        ++from;
    while (to > from && blank(text[to - 1]))
        --to;
    // A locale that groups with a (no-break) space gets typed with an ordinary one.
    const bool spaceGroup = locale.group.isSpace();
    std::string s;
    s.reserve(size_t(to - from));
    for (qsizetype i = from; i < to; ++i) {
        const QChar c = text[i];
        if (c == locale.group || (spaceGroup && c == QLatin1Char(' ')))
            continue;
        if (c == locale.decimal)
            s += '.';
        else if (c == QLatin1Char('.'))
            s += '\x7f';  // a point that is neither mark nor separator here
        else
            s += ascii(c);
    }
    double value = 0;
    size_t used = 0;
    Range range = Range::Ok;
    if (!s.empty() && s[0] == '&')
        used = scanRadix(s, value);
    else
        used = scanDecimal(s, value, range);
    if (used == 0 || used != s.size())
        throw VbError(13);
    if (range == Range::Overflow)
        throw VbError(6);
    return value;
}

float vbCSng(double value)
{
    if (std::isfinite(value) && std::fabs(value) > double(FLT_MAX))
        throw VbError(6);
    return float(value);
}

float vbCSng(const QString &text, const NumberLocale &locale) { return vbCSng(vbCDbl(text, locale)); }

// ---------------------------------------------------------------------------------------------
// Integer conversion and arithmetic

namespace {

template <typename T>
T roundChecked(double value)
{
    // nearbyint in the default rounding mode takes halves to the even neighbour.
    const double r = std::nearbyint(value);
    if (!(r >= double(std::numeric_limits<T>::min()) && r <= double(std::numeric_limits<T>::max())))
        throw VbError(6);
    return static_cast<T>(r);
}

}  // namespace

int16_t vbCInt(double value) { return roundChecked<int16_t>(value); }
int32_t vbCLng(double value) { return roundChecked<int32_t>(value); }
uint8_t vbCByte(double value) { return roundChecked<uint8_t>(value); }
double vbInt(double value) { return std::floor(value); }
double vbFix(double value) { return std::trunc(value); }

double vbDivide(double a, double b)
{
    if (b == 0)
        throw VbError(a == 0 ? 6 : 11);
    return a / b;
}

int32_t vbIntDiv(double a, double b)
{
    const int32_t x = vbCLng(a);
    const int32_t y = vbCLng(b);
    if (y == 0)
        throw VbError(11);
    if (x == INT32_MIN && y == -1)
        throw VbError(6);
    return x / y;
}

int32_t vbMod(double a, double b)
{
    const int32_t x = vbCLng(a);
    const int32_t y = vbCLng(b);
    if (y == 0)
        throw VbError(11);
    if (y == -1)
        return 0;
    return x % y;
}

int16_t vbCheckInteger(long long value)
{
    if (value < INT16_MIN || value > INT16_MAX)
        throw VbError(6);
    return int16_t(value);
}

int32_t vbCheckLong(long long value)
{
    if (value < INT32_MIN || value > INT32_MAX)
        throw VbError(6);
    return int32_t(value);
}

// ---------------------------------------------------------------------------------------------
// Strings

QString vbTrim(const QString &text) { return vbLTrim(vbRTrim(text)); }

QString vbLTrim(const QString &text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i] == QLatin1Char(' '))
        ++i;
    return text.mid(i);
}

QString vbRTrim(const QString &text)
{
    qsizetype n = text.size();
    while (n > 0 && text[n - 1] == QLatin1Char(' '))
        --n;
    return text.left(n);
}

QString vbFixed(const QString &text, int length)
{
    if (length <= 0)
        return {};
    if (text.size() >= length)
        return text.left(length);
    return text + QString(length - text.size(), QLatin1Char(' '));
}

namespace {

struct LikeItem {
    enum Kind : uint8_t { Star, Any, Digit, Char, Set } kind;
    bool negate = false;
    char16_t ch = 0;
    std::vector<std::pair<char16_t, char16_t>> ranges;
};

std::vector<LikeItem> parseLike(QStringView pattern)
{
    std::vector<LikeItem> items;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'*') {
            if (items.empty() || items.back().kind != LikeItem::Star)
                items.push_back({LikeItem::Star});
        } else if (c == u'?') {
            items.push_back({LikeItem::Any});
        } else if (c == u'#') {
            items.push_back({LikeItem::Digit});
        } else if (c == u'[' && pattern.indexOf(u']', i + 1) > i) {
            const qsizetype close = pattern.indexOf(u']', i + 1);
            LikeItem set{LikeItem::Set};
            qsizetype j = i + 1;
            if (j < close && pattern[j] == u'!') {
                set.negate = true;
                ++j;
            }
            if (j == close && !set.negate) {
                i = close;  // "[]" matches the empty string
                continue;
            }
            for (; j < close; ++j) {
                const char16_t lo = pattern[j].unicode();
                if (j + 2 < close && pattern[j + 1] == u'-') {
                    set.ranges.push_back({lo, pattern[j + 2].unicode()});
                    j += 2;
                } else {
                    set.ranges.push_back({lo, lo});
                }
            }
            items.push_back(std::move(set));
            i = close;
        } else {
            items.push_back({LikeItem::Char, false, c});
        }
    }
    return items;
}

bool inSet(const LikeItem &set, char16_t c)
{
    for (const auto &[lo, hi] : set.ranges) {
        if (c >= lo && c <= hi)
            return true;
    }
    return false;
}

bool matchesOne(const LikeItem &item, QChar c, bool caseSensitive)
{
    switch (item.kind) {
    case LikeItem::Any:
        return true;
    case LikeItem::Digit:
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    case LikeItem::Char:
        return caseSensitive ? c.unicode() == item.ch
                             : c.toCaseFolded() == QChar(item.ch).toCaseFolded();
    case LikeItem::Set: {
        bool hit = inSet(item, c.unicode());
        if (!hit && !caseSensitive)
            hit = inSet(item, c.toLower().unicode()) || inSet(item, c.toUpper().unicode());
        return hit != item.negate;
    }
    case LikeItem::Star:
        break;
    }
    return false;
}

}  // namespace

bool vbLike(const QString &text, const QString &pattern, bool caseSensitive)
{
    const std::vector<LikeItem> items = parseLike(pattern);
    // Every item but * takes exactly one character, so a star needs only its last position
    // remembered: on a mismatch it swallows one more character and matching resumes behind it.
    size_t pi = 0;
    qsizetype ti = 0;
    size_t starItem = SIZE_MAX;
    qsizetype starText = 0;
    while (ti < text.size()) {
        if (pi < items.size() && items[pi].kind == LikeItem::Star) {
            starItem = pi++;
            starText = ti;
        } else if (pi < items.size() && matchesOne(items[pi], text[ti], caseSensitive)) {
            ++pi;
            ++ti;
        } else if (starItem != SIZE_MAX) {
            pi = starItem + 1;
            ti = ++starText;
        } else {
            return false;
        }
    }
    while (pi < items.size() && items[pi].kind == LikeItem::Star)
        ++pi;
    return pi == items.size();
}

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
