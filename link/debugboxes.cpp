#include "link/debugboxes.h"

#include "platform/dialogs.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

namespace kw {

namespace {

// The number typed into a debug box; a cancelled box or a text that is no number is passed over.
std::optional<double> askNumber(const QString &title, const QString &prompt, double start)
{
    const std::optional<QString> text = dialogs().input(title, prompt, vbCStr(start));
    if (!text)
        return std::nullopt;
    try {
        return vbCDbl(*text);
    } catch (const VbError &) {
        return std::nullopt;
    }
}

}  // namespace

void countDebugClick()
{
    if (++st.debugclicks < 5)
        return;
    if (auto v = askNumber(QStringLiteral("Transmission timing setup"), QStringLiteral("Serial timeout in s (+1s)[1]"), st.serialtimeout)) {
        try {
            if (*v != 0)
                st.serialtimeout = vbCByte(*v);
        } catch (const VbError &) {
        }
    }
    // It can be switched on here, and not off.
    if (auto v = askNumber(QStringLiteral("Transmission debug"), QStringLiteral("Show transmission  Yes = 1 / No = 0 "), st.transmissiondebug)) {
        if (*v == 1) {
            st.transmissiondebug = 1;
            if (uiHooks().showTransmission)
                uiHooks().showTransmission();
        }
    }
    if (auto v = askNumber(QStringLiteral("Transmission debug"), QStringLiteral("Noisevalue default=50"), st.noisevalue)) {
        try {
            if (*v < 100)
                st.noisevalue = vbCByte(*v);
        } catch (const VbError &) {
        }
    }
    st.debugclicks = 0;
}

}  // namespace kw
