// The queries: each asks one value and stores it in its field; a failed query keeps the field.

#include "link/commandtext.h"
#include "link/commands.h"
#include "link/connection.h"
#include "shell/state.h"
#include "shell/uihooks.h"

namespace kw {

void querycenterfreq()
{
    if (st.portopen == 1)
        storeFloat(askValue(QStringLiteral("#cf")), st.centerfreq);
}

void queryspan() { storeInt16(askValue(QStringLiteral("#sp")), st.span); }
void queryreflevel() { storeFloat(askValue(QStringLiteral("#rl")), st.reflevel); }
void queryattenuator() { storeFloat(askValue(QStringLiteral("#at")), st.attenuator); }
void querybandwith() { storeInt16(askValue(QStringLiteral("#bw")), st.bandwith); }
void queryvideofilter() { storeByte(askValue(QStringLiteral("#vf")), st.videofilter); }
void queryreadmode() { storeByte(askValue(QStringLiteral("#vm")), st.readmode); }
void querycalc() { storeByte(askValue(QStringLiteral("#dm")), st.calc); }
void querydbperdiv() { storeByte(askValue(QStringLiteral("#db")), st.dbperdiv); }

void querytrackgen()
{
    if (hasTrackingGenerator())
        storeByte(askValue(QStringLiteral("#tg")), st.tgon);
}

void querytglevel()
{
    if (hasTrackingGenerator())
        storeFloat(askValue(QStringLiteral("#tl")), st.tglevel);
}

// Older firmware does not know "#uc".
void queryuncal()
{
    if (firmwareNumber() <= 1.38f)
        return;
    const std::optional<double> value = askValue(QStringLiteral("#uc"));
    if (!value)
        return;
    st.ucflag = *value == 1 ? 1 : 0;
    if (uiHooks().uncalVisible)
        uiHooks().uncalVisible(st.ucflag == 1);
}

void readreflevel()
{
    st.vmtrace = 0;
    setvmtrace();
    queryreflevel();
    setreadmode();
}

}  // namespace kw
