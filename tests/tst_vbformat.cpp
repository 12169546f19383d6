#include "platform/vbformat.h"

#include <QtTest>
#include <cmath>
#include <limits>

using namespace kw;

namespace {

NumberLocale localeFor(bool german) { return german ? NumberLocale::deDE() : NumberLocale::enUS(); }

// Runs f and gives the runtime error number it throws, 0 if none.
template <typename F>
int errorOf(F f)
{
    try {
        f();
    } catch (const VbError &e) {
        return e.number;
    }
    return 0;
}

}  // namespace

struct FormatDoubleCase { bool german; double value; QString format; QString expected; };
struct StrAndCStrCase { double value; QString str; QString cstrUS; QString cstrDE; };
struct CdblCase { bool german; QString text; double expected; int error; };
struct IntegerConversionCase { QString kind; double value; int expected; int error; };
struct LikeCase { QString text; QString pattern; bool caseSensitive; bool expected; };
struct DatesCase { bool german; double date; QString general; QString longTime; };

class TestVbFormat : public QObject {
    Q_OBJECT
private slots:
    void formatDouble_data()
    {
        QTest::addColumn<FormatDoubleCase>("c");
        auto row = [](const char *name, bool de, double v, const char *f, const char *e) {
            QTest::newRow(name) << FormatDoubleCase{de, v, QString::fromUtf8(f), QString::fromUtf8(e)};
        };
        // halves away from zero, on the 15 decimal digits rather than the binary value
        row("2.5 in 0", false, 2.5, "0", "3");
        row("2.675", false, 2.675, "0.00", "2.68");
        row("0.075 with $", false, 0.075, "$#.##", "$.08");
        row("-0.005", false, -0.005, "###0.00", "-0.01");
        row("-0.4 keeps its sign", false, -0.4, "0", "-0");
        // placeholders
        row("0 in # is empty", false, 0.0, "##########", "");
        row("12.5 zero padded", false, 12.5, "0000.000", "0012.500");
        row("#.# of 0", false, 0.0, "#.#", ".");
        row("-0.1 in .#", false, -0.1, ".#", "-.1");
        row("trailing # vanish", false, 1.5, "0.0##", "1.5");
        // literals after placeholders, as the plot labels use them; a carry into a new digit
        row("K 999.95", false, 999.95, "###0.0K", "1000.0K");
        row("letters copied", false, 1.0, "##abcdefghijklmnopqrstuvwxyz", "1abcdefghijklmnopqrstuvwxyz");
        row("escaped and quoted", false, 5.0, "0\\#\" dB;x\"", "5# dB;x");
        // sections
        row("negative section, no sign added", false, -1.0, "\"pos\";\"neg\"", "neg");
        row("zero section", false, 0.0, "0.0;-0.0;\"none\"", "none");
        row("empty negative section", false, -5.0, "0;;z", "-5");
        // grouping, percent, scaling, exponent
        row("grouping", false, 1234567.0, "#,##0", "1,234,567");
        row("percent", false, 0.125, "0.0%", "12.5%");
        row("thousands scale", false, 1234567.0, "0,.0", "1234.6");
        row("scientific carry", false, 9.996, "0.00E+00", "1.00E+01");
        row("named standard", false, 1234.5, "Standard", "1,234.50");
        row("empty format", false, 0.5, "", "0.5");
        // comma locale: same formats, the locale's marks
        row("de K", true, 1.5, "###0.0K", "1,5K");
        row("de grouping", true, 1234567.0, "#,##0", "1.234.567");
    }
    void formatDouble()
    {
        QFETCH(FormatDoubleCase, c);
        const auto &[german, value, format, expected] = c;
        QCOMPARE(vbFormat(value, format, localeFor(german)), expected);
    }

    void singlesUseSevenDigits()
    {
        // 2.675f is 2.67499995... in binary: seven digits say 2.675, fifteen say 2.67499995231628
        const NumberLocale en = NumberLocale::enUS();
        QCOMPARE(QStringList({vbFormat(2.675f, QStringLiteral("0.00"), en), vbFormat(double(2.675f), QStringLiteral("0.00"), en),
                              vbFormat(42, QStringLiteral("0000"), en), vbCStr(654322.23456f, en), vbStr(0.1f), vbStr(7)}),
                 QStringList({"2.68", "2.67", "0042", "654322.3", " .1", " 7"}));
    }

    void formatKeepsWorkingAcrossManyFormats()
    {
        // more distinct formats than the parsed-format cache holds, then the first again
        const NumberLocale en = NumberLocale::enUS();
        for (int i = 0; i < 20; ++i)
            QCOMPARE(vbFormat(double(i), QString(i + 1, QLatin1Char('0')), en), QString::number(i).rightJustified(i + 1, QLatin1Char('0')));
        QCOMPARE(vbFormat(1.0, QStringLiteral("0"), en), QStringLiteral("1"));
    }

    void strAndCStr_data()
    {
        QTest::addColumn<StrAndCStrCase>("c");
        auto row = [](double v, const char *s, const char *us, const char *de) {
            QTest::newRow(us) << StrAndCStrCase{v, QString::fromLatin1(s), QString::fromLatin1(us), QString::fromLatin1(de)};
        };
        row(0.5, " .5", "0.5", "0,5");
        row(double(0.1f), " .100000001490116", "0.100000001490116", "0,100000001490116");
        row(1e15, " 1E+15", "1E+15", "1E+15");
        row(1000000000000005.0, " 1.00000000000001E+15", "1.00000000000001E+15", "1,00000000000001E+15");
        row(0.0001, " .0001", "0.0001", "0,0001");
        row(0.000015, " 1.5E-05", "1.5E-05", "1,5E-05");
        row(-2.5e-300, "-2.5E-300", "-2.5E-300", "-2,5E-300");
    }
    void strAndCStr()
    {
        QFETCH(StrAndCStrCase, c);
        const auto &[value, str, cstrUS, cstrDE] = c;
        QCOMPARE(vbStr(value), str);
        QCOMPARE(std::pair(vbCStr(value, NumberLocale::enUS()), vbCStr(value, NumberLocale::deDE())), std::pair(cstrUS, cstrDE));
    }

    void val_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("comma stops") << "1,5" << 1.0;
        QTest::newRow("address") << "    1615 198th Street N.E." << 1615198.0;
        QTest::newRow("tab and line feed") << "1\t2\n3" << 123.0;
        QTest::newRow("hex -1") << "&HFFFF" << -1.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("point") << "-12.5dBm" << -12.5;
        QTest::newRow("exponent") << "1.5E3x" << 1500.0;
        QTest::newRow("huge") << "1E999" << std::numeric_limits<double>::max();
        QTest::newRow("tiny") << "1E-999" << 0.0;
    }
    void val()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(vbVal(text), expected);
    }

    void cdbl_data()
    {
        QTest::addColumn<CdblCase>("c");
        QTest::newRow("us 1,5") << CdblCase{false, "1,5", 15.0, 0};
        QTest::newRow("de 1,5") << CdblCase{true, "1,5", 1.5, 0};
        QTest::newRow("de 1.5") << CdblCase{true, "1.5", 15.0, 0};
        QTest::newRow("us grouped") << CdblCase{false, " -1,234.5 ", -1234.5, 0};
        QTest::newRow("hex") << CdblCase{false, "&H10", 16.0, 0};
        QTest::newRow("abc") << CdblCase{false, "abc", 0.0, 13};
        QTest::newRow("two marks") << CdblCase{false, "1.2.3", 0.0, 13};
        QTest::newRow("overflow") << CdblCase{false, "1e400", 0.0, 6};
    }
    void cdbl()
    {
        QFETCH(CdblCase, c);
        const auto &[german, text, expected, error] = c;
        double got = 0;
        QCOMPARE(errorOf([&] { got = vbCDbl(text, localeFor(german)); }), error);
        if (error == 0)
            QCOMPARE(got, expected);
    }

    void integerConversion_data()
    {
        QTest::addColumn<IntegerConversionCase>("c");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("CInt 2.5") << IntegerConversionCase{"i", 2.5, 2, 0};
        QTest::newRow("CInt 3.5") << IntegerConversionCase{"i", 3.5, 4, 0};
        QTest::newRow("CInt 32767.5") << IntegerConversionCase{"i", 32767.5, 0, 6};
        QTest::newRow("CInt -32768.5") << IntegerConversionCase{"i", -32768.5, -32768, 0};
        QTest::newRow("CInt -32768.51") << IntegerConversionCase{"i", -32768.51, 0, 6};
        QTest::newRow("CInt NaN") << IntegerConversionCase{"i", nan, 0, 6};
        QTest::newRow("CLng 8.5") << IntegerConversionCase{"l", 8.5, 8, 0};
        QTest::newRow("CLng 2147483647.5") << IntegerConversionCase{"l", 2147483647.5, 0, 6};
        QTest::newRow("CLng inf") << IntegerConversionCase{"l", std::numeric_limits<double>::infinity(), 0, 6};
        QTest::newRow("CByte 255.5") << IntegerConversionCase{"b", 255.5, 0, 6};
        QTest::newRow("CByte -0.51") << IntegerConversionCase{"b", -0.51, 0, 6};
        QTest::newRow("date seconds") << IntegerConversionCase{"l", (45000.5 + 10.0 / 86400 - 45000.5) * 86400, 10, 0};
    }
    void integerConversion()
    {
        QFETCH(IntegerConversionCase, c);
        const auto &[kind, value, expected, error] = c;
        int got = 0;
        QCOMPARE(errorOf([&] {
                     got = kind == QLatin1String("i") ? vbCInt(value)
                         : kind == QLatin1String("l") ? vbCLng(value)
                                                      : vbCByte(value);
                 }),
                 error);
        QCOMPARE(got, expected);
    }

    void arithmetic()
    {
        QCOMPARE(std::tuple(vbInt(-8.4), vbFix(-8.4), vbInt((45000.5 + 10.0 / 86400 - 45000.5) * 86400)), std::tuple(-9.0, -8.0, 9.0));
        QCOMPARE(QList<int32_t>({vbMod(12.6, 5), vbMod(12, 4.3), vbIntDiv(7.5, 2), vbIntDiv(6.5, 2), vbCheckLong(200 * 200)}),
                 QList<int32_t>({3, 0, 4, 3, 40000}));
        // A reply whose text reads as no finite number never becomes an infinite field (found by the fuzzer).
        const QList<int> errors{errorOf([] { vbDivide(1, 0); }), errorOf([] { vbDivide(0, 0); }), errorOf([] { vbMod(5, 0.4); }),
                                errorOf([] { vbCheckInteger(200 * 200); }), errorOf([] { vbCSng(1e300); }),
                                errorOf([] { vbCSng(std::numeric_limits<double>::infinity()); }),
                                errorOf([] { vbCSng(std::numeric_limits<double>::quiet_NaN()); })};
        QCOMPARE(errors, QList<int>({11, 6, 11, 6, 6, 6, 6}));
    }

    void strings()
    {
        // Only blanks are trimmed; fixed-length strings pad and cut.
        QCOMPARE(QStringList({vbTrim(QStringLiteral("  ab  ")), vbTrim(QStringLiteral("\tab")), vbRTrim(QStringLiteral("ab") + QChar(0)),
                              vbFixed(QStringLiteral("abc"), 5), vbFixed(QStringLiteral("abcdef"), 4)}),
                 QStringList({"ab", "\tab", QStringLiteral("ab") + QChar(0), "abc  ", "abcd"}));
    }

    void like_data()
    {
        QTest::addColumn<LikeCase>("c");
        QTest::newRow("star backtracks") << LikeCase{"abcbc", "a*bc", true, true};
        QTest::newRow("star needs the end") << LikeCase{"abcd", "a*c", true, false};
        QTest::newRow("digit") << LikeCase{"a2a", "a#a", true, true};
        QTest::newRow("binary case") << LikeCase{"abc", "ABC", true, false};
        QTest::newRow("text case") << LikeCase{"abc", "ABC", false, true};
        QTest::newRow("not in range") << LikeCase{"F", "[!A-E]", true, true};
        QTest::newRow("range any case") << LikeCase{"c", "[A-E]", false, true};
        QTest::newRow("star in brackets") << LikeCase{"a*", "a[*]", true, true};
        QTest::newRow("anchored") << LikeCase{"xabc", "abc", false, false};
        QTest::newRow("empty text") << LikeCase{"", "*", false, true};
        QTest::newRow("unclosed bracket") << LikeCase{"a[b", "a[b", false, true};
        QTest::newRow("name with quote") << LikeCase{"O'Neil", "o'neil", false, true};
    }
    void like()
    {
        QFETCH(LikeCase, c);
        const auto &[text, pattern, caseSensitive, expected] = c;
        QCOMPARE(vbLike(text, pattern, caseSensitive), expected);
    }

    void dates_data()
    {
        QTest::addColumn<DatesCase>("c");
        const double day = double(QDate(1899, 12, 30).daysTo(QDate(2024, 11, 21)));
        const double time = (15 * 3600 + 4 * 60 + 5) / 86400.0;
        QTest::newRow("us date and time") << DatesCase{false, day + time, "11/21/2024 3:04:05 PM", "3:04:05 PM"};
        QTest::newRow("de date and time") << DatesCase{true, day + time, "21.11.2024 15:04:05", "15:04:05"};
        QTest::newRow("us midnight") << DatesCase{false, day, "11/21/2024", "12:00:00 AM"};
        QTest::newRow("us noon no date") << DatesCase{false, 0.5, "12:00:00 PM", "12:00:00 PM"};
        QTest::newRow("negative date") << DatesCase{true, -12.25, "18.12.1899 06:00:00", "06:00:00"};
        QTest::newRow("out of range") << DatesCase{false, 1e9, "1000000000", "1000000000"};
    }
    void dates()
    {
        QFETCH(DatesCase, c);
        const auto &[german, date, general, longTime] = c;
        const NumberLocale l = localeFor(german);
        QCOMPARE(QStringList({vbGeneralDate(date, l), vbFormat(date, QStringLiteral("general date"), l)}), QStringList({general, general}));
        QCOMPARE(QStringList({vbLongTime(date, l), vbFormat(date, QStringLiteral("Long Time"), l)}), QStringList({longTime, longTime}));
    }

    void oleDateRoundTrip()
    {
        const QDateTime before(QDate(1899, 12, 18), QTime(6, 0));
        QCOMPARE(std::pair(toOleDate(before), fromOleDate(-12.25)), std::pair(-12.25, before));
        const QDateTime now(QDate(2024, 11, 21), QTime(15, 4, 5, 250));
        QCOMPARE(fromOleDate(toOleDate(now)), now);
        QVERIFY(!fromOleDate(std::numeric_limits<double>::quiet_NaN()).isValid());
    }
};

QTEST_MAIN(TestVbFormat)
#include "tst_vbformat.moc"
