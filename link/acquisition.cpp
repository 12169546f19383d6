#include "link/acquisition.h"

#include "levels/correctiontables.h"
#include "link/blockread.h"
#include "link/commands.h"
#include "link/commandtext.h"
#include "link/connection.h"
#include "link/storetrace.h"
#include "link/transport.h"
#include "platform/screen.h"
#include "platform/serialcontrol.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

namespace kw {

// The plot's drawing pass. Referenced weakly: a build without the plot (the link's own tests) reads
// and stores traces and draws nothing; nothing here pulls a stand-in over the real one.
void DrawPlot() __attribute__((weak));

namespace {

const QChar kCr(13);

// The checksum is only compared on a retry, and no block ever reaches a retry: the counter starts
// at 0 and the first pass takes whatever the sum says. The analyser's users have always had it so.
enum class BlockCheck { Take, Again, Failed };

BlockCheck checkblock(int &retry, uint32_t received, uint32_t sum)
{
    if (retry == 0 || received == sum)
        return BlockCheck::Take;
    st.serialerrortext = QStringLiteral(" Sample read checksum error       KT:") + QString::number(received) +
                         QStringLiteral("    WIN:") + QString::number(sum);
    if (retry >= 2) {
        serialfault();
        return BlockCheck::Failed;
    }
    ++retry;
    return BlockCheck::Again;
}

// The "RD" that confirms a step after its block.
bool waitforrd()
{
    readreply();
    if (st.reply == QLatin1String("RD"))
        return true;
    st.serialerrortext = QStringLiteral("Wait for RD");
    serialfault();
    return false;
}

void prepareblockcommand()
{
    comm1().clearOutput();
    comm1().setInputLen(1);
    st.command = QStringLiteral("#bm1") + kCr;
}

// Common start of the three read routines, after the busy pointer shows.
void beginread()
{
    st.peaklevel = -1000;
    opencorrectiontables();
}

// The live and sweep reads: the traces come from the analyser now, unless an EMC run holds them.
void beginlive()
{
    st.pointcount = 2001;
    busypointer();
    if (st.mode == 0)
        st.filemode = 0;
    beginread();
}

}  // namespace

void readsampleblock()
{
    // The conversion is to use the reference and attenuator that hold at this moment.
    queryreflevel();
    queryattenuator();
    doEvents();
    int retry = 0;
    uint32_t sum = 0;  // not set back on a retry
    for (;;) {
        st.freqstart = st.centerfreq - float(st.span) / 2.0f;
        st.freqstop = float(st.span) + st.freqstart;
        st.serialerrortext = QStringLiteral(" Sample read error (#bm1)");
        prepareblockcommand();
        if (!sendblockcommand()) {
            serialfault();
            return;
        }
        uint32_t received = 0;
        if (!receiveblock(sum, received, nullptr))
            return;
        // The last byte of the block is left in the buffer; the next command throws it away.
        const BlockCheck check = checkblock(retry, received, sum);
        if (check == BlockCheck::Take)
            storetrace();
        if (check != BlockCheck::Again)
            return;
    }
}

void readblockwithrd()
{
    readreply();
    if (st.reply != QLatin1String("RD")) {
        serialfault();
        return;
    }
    int retry = 0;
    uint32_t sum = 0;
    for (;;) {
        st.serialerror = 0;
        prepareblockcommand();
        // A failure from here on shows the read error text that readreply left.
        if (!sendblockcommand()) {
            serialfault();
            return;
        }
        doEvents();
        uint32_t received = 0;
        if (!receiveblock(sum, received, nullptr))
            return;
        if (checkblock(retry, received, sum) != BlockCheck::Again)
            return;  // rawblock is left as received
    }
}

// The block comes unasked after the step. Up to firmware 1.46 no "RD" follows it at 19200 baud or
// below; later firmware, and any faster line, confirm the step after the block.
void readstepblock()
{
    QString trailer;
    int retry = 0;
    uint32_t sum = 0;
    for (;;) {
        comm1().setInputLen(1);
        st.serialerror = 0;
        comm1().clearOutput();
        doEvents();
        uint32_t received = 0;
        if (!receiveblock(sum, received, &trailer))
            return;
        readbyte();  // the block's last byte
        const BlockCheck check = checkblock(retry, received, sum);
        if (check == BlockCheck::Take)
            break;
        if (check == BlockCheck::Failed)
            return;
        if (st.baudrate >= 19200 && !waitforrd())
            return;
    }
    if ((firmwareNumber() > 1.46f || st.baudrate > 19200) && !waitforrd())
        return;
    if (firmwareNumber() > 1.04f)
        storeFloat(vbVal(trailer.mid(17, 8)), st.centerfreq);  // beyond a Single, the centre stays
}

void readtraces()
{
    if (!comm1().portOpen())
        return;
    st.serialerror = 0;
    beginlive();
    // Each test is made when its turn comes: a click in a yield may have changed the view.
    for (int turn = 0; turn < 5; ++turn) {
        int vm = -1;
        switch (turn) {
        case 0: vm = st.viewsample == 1 ? 0 : -1; break;
        case 1: vm = st.calc == 1 && st.viewaverage == 1 ? 3 : -1; break;
        case 2: vm = st.viewmaxhold == 1 && st.calc == 1 ? 4 : -1; break;
        case 3: vm = st.viewb == 1 ? 1 : -1; break;
        default: vm = st.viewab == 1 ? 2 : -1; break;
        }
        if (vm < 0)
            continue;
        st.vmtrace = uint8_t(vm);
        setvmtrace();
        readsampleblock();
    }
    if (st.mode == 0) {
        setreadmode();
        readallsettings();
        if (DrawPlot)
            DrawPlot();
    }
    normalpointer();
}

void readsweep()
{
    if (!comm1().portOpen())
        return;
    beginlive();
    readsampleblock();
}

void readstep()
{
    if (!comm1().portOpen())
        return;
    st.pointcount = 2001;
    doEvents();
    busypointer();
    st.filemode = 1;
    beginread();
    st.serialerrortext = QStringLiteral("Read Data");
    st.vmtrace = 0;
    if (firmwareNumber() > 1.04f)
        readstepblock();
    else
        readblockwithrd();
}

}  // namespace kw
