#pragma once
// Number formatting and conversion as the system's classic runtime does them: format strings with
// halves rounded away from zero on the 15 (double) or 7 (float) significant digits, banker's
// rounding for integer conversion, Val's forgiving scan and the locale's decimal mark.

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace kw {

// The separators and patterns of a locale. system() reads the machine's; tests build fixed ones.
// Date and time patterns know d dd M MM yy yyyy h hh H HH m mm s ss, "AP"/"ap"/"tt" for the AM/PM
// text (am, pm) and '...' for literal text.
struct NumberLocale {
    QChar decimal = QLatin1Char('.');
    QChar group = QLatin1Char(',');
    QString shortDate = QStringLiteral("M/d/yyyy");
    QString longTime = QStringLiteral("h:mm:ss AP");
    QString am = QStringLiteral("AM");
    QString pm = QStringLiteral("PM");
    static NumberLocale system();
    static NumberLocale enUS();
    static NumberLocale deDE();
};

// The locale the program formats with (system() unless a test sets another).
const NumberLocale &numberLocale();
void setNumberLocale(const NumberLocale &locale);

// A run-time error of the classic runtime: 6 overflow, 11 division by zero, 13 type mismatch, ...
struct VbError : std::runtime_error {
    int number;
    explicit VbError(int n) : std::runtime_error("runtime error " + std::to_string(n)), number(n) {}
};

// Format(value, format): a double is expanded to 15 significant digits, a float to 7, then rounded
// to the format's places with halves away from zero. Sections "pos;neg;zero", 0 # . , % E+ E-,
// \x and "..." literals; other characters print as themselves. Named formats (any case):
// "General Number", "Fixed", "Standard", "Percent", "Scientific", "Yes/No", "True/False",
// "On/Off", "General Date", "Long Time", "Short Date". An empty format gives vbCStr's text.
QString vbFormat(double value, const QString &format, const NumberLocale &locale = numberLocale());
QString vbFormat(float value, const QString &format, const NumberLocale &locale = numberLocale());
QString vbFormat(int value, const QString &format, const NumberLocale &locale = numberLocale());

// Str: a blank for the sign of a positive number, always a point, no zero before the point of
// 0.x (" .5"). CStr: the locale's mark, "0.5". Both show 15 (double) or 7 (float) significant
// digits without trailing zeros, and switch to E notation ("1E+15", "1.5E-05") when the decimal
// exponent is below -4 or reaches the digit count, as the C runtime's %G does.
QString vbStr(double value);
QString vbStr(float value);
QString vbStr(int value);
QString vbCStr(double value, const NumberLocale &locale = numberLocale());
QString vbCStr(float value, const NumberLocale &locale = numberLocale());
QString vbCStr(int value, const NumberLocale &locale = numberLocale());

// Val: leading number of a text, point only, blanks, tabs and line feeds removed first, &H and &O
// prefixes (up to FFFF a 16-bit, up to FFFFFFFF a 32-bit signed value). Never fails: no number
// gives 0, a number beyond the double range the largest double of its sign.
double vbVal(const QString &text);
// CDbl/CSng on a text in the locale: group separators dropped anywhere, blanks and tabs around
// allowed; throws VbError(13) for anything else and VbError(6) beyond the range.
double vbCDbl(const QString &text, const NumberLocale &locale = numberLocale());
float vbCSng(const QString &text, const NumberLocale &locale = numberLocale());
float vbCSng(double value);  // throws VbError(6) beyond the float range

// Integer conversions round halves to even and throw VbError(6) out of range (NaN included).
int16_t vbCInt(double value);
int32_t vbCLng(double value);
uint8_t vbCByte(double value);
// Int rounds down, Fix toward zero; both keep the double.
double vbInt(double value);
double vbFix(double value);

// Arithmetic with the runtime's errors: a / b throws 11 for b = 0 (6 for 0 / 0); a \ b and
// a Mod b round both operands like vbCLng first. vbCheckInteger/vbCheckLong narrow the result of
// Integer or Long arithmetic done in a wider type, throwing 6 when it does not fit.
double vbDivide(double a, double b);
int32_t vbIntDiv(double a, double b);
int32_t vbMod(double a, double b);
int16_t vbCheckInteger(long long value);
int32_t vbCheckLong(long long value);

// Trim removes blanks (U+0020) only.
QString vbTrim(const QString &text);
QString vbLTrim(const QString &text);
QString vbRTrim(const QString &text);
// A fixed-length string: the text padded with blanks or cut to length.
QString vbFixed(const QString &text, int length);

// Like with * ? # [list] [!list] [a-z], anchored at both ends; caseSensitive false for database
// criteria. A [ without its ] stands for itself.
bool vbLike(const QString &text, const QString &pattern, bool caseSensitive = false);

// Date-time as days since 30 Dec 1899: "General Date" (date only at midnight, time only on day 0)
// and "Long Time", both to whole seconds. A value outside years 100..9999 prints as a number.
QString vbGeneralDate(double date, const NumberLocale &locale = numberLocale());
QString vbLongTime(double date, const NumberLocale &locale = numberLocale());
QString vbShortDate(double date, const NumberLocale &locale = numberLocale());
// The fraction of a negative date is still the time after that day's midnight (-12.25 is
// 18 Dec 1899 06:00). fromOleDate gives a local date-time to the millisecond, or an invalid one.
double toOleDate(const QDateTime &dateTime);
QDateTime fromOleDate(double date);

}  // namespace kw
