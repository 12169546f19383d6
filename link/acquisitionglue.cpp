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

}  // namespace kw
