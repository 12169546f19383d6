#pragma once
// Number formatting and conversion as the system's classic runtime does them: format strings with
// halves rounded away from zero on the 15 (double) or 7 (float) significant digits, banker's
// rounding for integer conversion, Val's forgiving scan and the locale's decimal mark.

#include <QString>
#include <cstdint>
#include <stdexcept>

namespace kw {

// The separators and patterns of a locale. system() reads the machine's; tests build fixed ones.
struct NumberLocale {
    QChar decimal = QLatin1Char('.');
    QChar group = QLatin1Char(',');
    QString shortDate = QStringLiteral("M/d/yyyy");
    QString longTime = QStringLiteral("h:mm:ss AP");
    static NumberLocale system();
    static NumberLocale enUS();
    static NumberLocale deDE();
};

// The locale the program formats with (system() unless a test sets another).
const NumberLocale &numberLocale();
void setNumberLocale(const NumberLocale &locale);

// A run-time error of the classic runtime: 6 overflow, 13 type mismatch, ...
struct VbError : std::runtime_error {
    int number;
    explicit VbError(int n) : std::runtime_error("runtime error " + std::to_string(n)), number(n) {}
};

// Format(value, format): a double is expanded to 15 significant digits, a float to 7.
QString vbFormat(double value, const QString &format, const NumberLocale &locale = numberLocale());
QString vbFormat(float value, const QString &format, const NumberLocale &locale = numberLocale());
QString vbFormat(int value, const QString &format, const NumberLocale &locale = numberLocale());

// Str: a blank for the sign of a positive number, always a point. CStr: the locale's mark.
QString vbStr(double value);
QString vbStr(float value);
QString vbCStr(double value, const NumberLocale &locale = numberLocale());
QString vbCStr(float value, const NumberLocale &locale = numberLocale());

// Val: leading number of a text, point only, blanks removed, never fails.
double vbVal(const QString &text);
// CDbl/CSng on a text in the locale: group separators dropped anywhere; throws VbError(13).
double vbCDbl(const QString &text, const NumberLocale &locale = numberLocale());

// Integer conversions round halves to even and throw VbError(6) out of range.
int16_t vbCInt(double value);
int32_t vbCLng(double value);
uint8_t vbCByte(double value);

// Trim removes blanks (U+0020) only.
QString vbTrim(const QString &text);
QString vbLTrim(const QString &text);
QString vbRTrim(const QString &text);

// Like with * ? # [list] [!list]; caseSensitive false for database criteria.
bool vbLike(const QString &text, const QString &pattern, bool caseSensitive = false);

// Date-time as days since 30 Dec 1899: "General Date" and "Long Time".
QString vbGeneralDate(double date, const NumberLocale &locale = numberLocale());
QString vbLongTime(double date, const NumberLocale &locale = numberLocale());

}  // namespace kw
