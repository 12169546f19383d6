// Text to numbers and numbers to integers, as the classic runtime converts them.
#include "platform/vbformat.h"

#include <QDateTime>
#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kw {

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
    // The runtime's doubles are never infinite or NaN: such a value is an overflow like any other
    // beyond the float range, never a field that turns infinite.
    if (!std::isfinite(value) || std::fabs(value) > double(FLT_MAX))
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

}  // namespace kw
