// The classic conversions on any text and any number: Val, CDbl and CSng in both locales, Format
// with any format string, Like with any pattern, and the date texts of any date value.

#include "platform/vbformat.h"
#include "support/fuzzsupport.h"

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kw::fuzz::prepare();
    if (size < 8)
        return 0;
    double number = 0;
    std::memcpy(&number, data, sizeof number);
    const QString rest = QString::fromUtf8(kw::fuzz::bytes(data + 8, size - 8));
    const qsizetype split = rest.indexOf(QChar(0));
    const QString first = split < 0 ? rest : rest.left(split);
    const QString second = split < 0 ? QString() : rest.mid(split + 1);

    for (const kw::NumberLocale &locale : {kw::NumberLocale::enUS(), kw::NumberLocale::deDE()}) {
        (void)kw::vbVal(first);
        try {
            (void)kw::vbCDbl(first, locale);
        } catch (const kw::VbError &) {
        }
        try {
            (void)kw::vbCSng(first, locale);
        } catch (const kw::VbError &) {
        }
        (void)kw::vbFormat(number, second, locale);
        (void)kw::vbFormat(float(number), second, locale);
        (void)kw::vbCStr(number, locale);
        (void)kw::vbGeneralDate(number, locale);
        (void)kw::vbLongTime(number, locale);
        (void)kw::vbShortDate(number, locale);
    }
    (void)kw::vbStr(number);
    (void)kw::vbLike(first, second);
    (void)kw::fromOleDate(number);
    for (auto convert : {+[](double v) { (void)kw::vbCInt(v); }, +[](double v) { (void)kw::vbCLng(v); },
                         +[](double v) { (void)kw::vbCByte(v); }, +[](double v) { (void)kw::vbCSng(v); }}) {
        try {
            convert(number);
        } catch (const kw::VbError &) {
        }
    }
    return 0;
}
