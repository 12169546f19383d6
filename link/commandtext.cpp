#include "link/commandtext.h"

#include "link/transport.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

QString trimmedNumber(double value) { return vbLTrim(vbStr(value)); }
QString trimmedSingle(float value) { return vbLTrim(vbStr(value)); }

QString signedLevel(float value)
{
    const QString text = vbFormat(value, QStringLiteral("00.0"));
    return value >= 0 ? QStringLiteral("+") + text : text;
}

void sendSetting(const QString &text)
{
    if (st.portopen != 1)
        return;
    st.command = text;
    sendcommand();
}

std::optional<double> askValue(const QString &text)
{
    st.command = text;
    // No clearing of serialerror here: with the link down the query sends nothing, and the error
    // must stay set so that the block reads that follow in the same pass fail in silence.
    querycommand();
    if (st.portopen != 1 || st.serialerror)
        return std::nullopt;
    return vbVal(st.reply.mid(2));
}

namespace {
// A reply converted to the field's type; one out of range leaves the field as it was.
template <typename T>
void storeConverted(std::optional<double> value, T &field, T (*convert)(double))
{
    if (!value)
        return;
    try {
        field = convert(*value);
    } catch (const VbError &) {
    }
}
}  // namespace

void storeInt16(std::optional<double> value, int16_t &field) { storeConverted(value, field, &vbCInt); }
void storeByte(std::optional<double> value, uint8_t &field) { storeConverted(value, field, &vbCByte); }

void storeFloat(std::optional<double> value, float &field) { storeConverted(value, field, &vbCSng); }

}  // namespace kw
