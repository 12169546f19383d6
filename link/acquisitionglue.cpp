#include "link/acquisitionglue.h"

#include "link/transport.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

void queryreflevelplain()
{
    st.command = QStringLiteral("#rl");
    querycommand();
    if (!st.serialerror && st.portopen)
        st.reflevel = float(vbVal(st.reply.mid(2)));
}
void queryattenuator()
{
    st.command = QStringLiteral("#at");
    querycommand();
    if (!st.serialerror && st.portopen)
        st.attenuator = float(vbVal(st.reply.mid(2)));
}
void setvmtrace()
{
    if (st.portopen != 1)
        return;
    st.command = QStringLiteral("#vm") + QString::number(st.vmtrace);
    sendcommand();
}
void setreadmode()
{
    if (st.portopen != 1)
        return;
    st.command = QStringLiteral("#vm") + QString::number(st.readmode);
    sendcommand();
}
void readallsettings() {}
void drawplot() {}

}  // namespace kw
