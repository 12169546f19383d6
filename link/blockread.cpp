#include "link/blockread.h"

#include "link/transport.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"

namespace kw {

bool sendblockcommand()
{
    SerialControl &comm = comm1();
    for (const QChar c : std::as_const(st.command)) {
        bool echoed = false;
        for (int attempt = 0; attempt < 3 && !echoed; ++attempt) {
            comm.clearInput();
            comm.output(QByteArray(1, static_cast<char>(c.unicode() & 0xFF)));
            echoed = waitforbyte() && readchar() == QString(c);
        }
        if (!echoed)
            return false;
    }
    return true;
}

bool receiveblock(uint32_t &sum, uint32_t &received, QString *trailer)
{
    for (int i = 1; i <= kBlockBody; ++i) {
        if (!waitforbyte()) {
            serialfault();
            return false;
        }
        const uint8_t b = readbyte();
        st.rawblock[size_t(i)] = b;
        if (i <= st.pointcount)
            sum += b;
        else if (trailer)
            *trailer += QChar(char16_t(b));
    }
    if (!waitforbytes(4)) {
        serialfault();
        return false;
    }
    received = uint32_t(readbyte()) << 16;
    received += uint32_t(readbyte()) << 8;
    received += readbyte();
    return true;
}

}  // namespace kw
