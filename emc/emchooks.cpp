#include "emc/emchooks.h"

#include "platform/vbformat.h"

namespace kw {

EmcHooks &emcHooks()
{
    static EmcHooks hooks;
    return hooks;
}

void showRunFrequency(double mhz)
{
    if (emcHooks().frequencyShown)
        emcHooks().frequencyShown(vbFormat(mhz, QStringLiteral("###0.00")));
}

void enableTestChoice(bool on)
{
    if (emcHooks().comboEnabled)
        emcHooks().comboEnabled(on);
}

void enableStart(bool on)
{
    if (emcHooks().startEnabled)
        emcHooks().startEnabled(on);
}

void tellRowWritten(const char *what, double f)
{
    if (emcHooks().rowWritten)
        emcHooks().rowWritten(what, f);
}

}  // namespace kw
