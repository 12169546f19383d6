// The setting commands: each sends one text built from the record and expects "RD".

#include "link/commandtext.h"
#include "link/commands.h"
#include "link/transport.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

bool hasTrackingGenerator() { return st.portopen == 1 && !st.modelname.contains(QLatin1String("3400")); }

void setcenterfreq()
{
    st.centerfreq = std::clamp(st.centerfreq, 0.0f, 1050.0f);
    sendSetting(QStringLiteral("#cf") + vbFormat(st.centerfreq, QStringLiteral("0000.000")));
}

void setspan() { sendSetting(QStringLiteral("#sp") + trimmedNumber(st.span)); }
void setspanzero() { sendSetting(QStringLiteral("#sp0")); }

void setreflevel()
{
    if (st.portopen != 1)
        return;
    sendSetting(QStringLiteral("#rl") + signedLevel(st.reflevel));
    readreflevel();
}

void setattenuator() { sendSetting(QStringLiteral("#at") + trimmedSingle(st.attenuator)); }
void setbandwith() { sendSetting(QStringLiteral("#bw") + trimmedNumber(st.bandwith)); }
void setbw400() { sendSetting(QStringLiteral("#bw400")); }
void setbw9() { sendSetting(QStringLiteral("#bw9")); }
void setvideofilter() { sendSetting(QStringLiteral("#vf") + trimmedNumber(st.videofilter)); }
void setdbperdiv() { sendSetting(QStringLiteral("#db") + trimmedNumber(st.dbperdiv)); }
void setreadmode() { sendSetting(QStringLiteral("#vm") + trimmedNumber(st.readmode)); }

void setvmstart()
{
    if (st.vmstart <= 2)
        sendSetting(QStringLiteral("#vm") + QString::number(st.vmstart));
}

void setvmtrace() { sendSetting(QStringLiteral("#vm") + trimmedNumber(st.vmtrace)); }

// Starting the calculation switches the analyser's screen; the shown trace is set again after.
void setcalcon()
{
    if (st.portopen != 1)
        return;
    sendSetting(QStringLiteral("#dm1"));
    setreadmode();
}

void setcalcoff() { sendSetting(QStringLiteral("#dm0")); }

void settglevel()
{
    if (!hasTrackingGenerator())
        return;
    sendSetting(QStringLiteral("#tl") + signedLevel(st.tglevel));
    querytglevel();
}

void settrackgen()
{
    if (!hasTrackingGenerator())
        return;
    settglevel();
    sendSetting(QStringLiteral("#tg") + trimmedNumber(st.tgon));
    if (st.tgon == 1)
        settglevel();
}

void savememory() { sendSetting(QStringLiteral("#sv") + trimmedNumber(st.memorynumber)); }
void recallmemory() { sendSetting(QStringLiteral("#rc") + trimmedNumber(st.memorynumber)); }
void savetob() { sendSetting(QStringLiteral("#sa")); }
void setes0() { sendSetting(QStringLiteral("#es0")); }
void setes1() { sendSetting(QStringLiteral("#es1")); }
void settrigger() { sendSetting(QStringLiteral("#tr") + vbFormat(st.triggervalue, QStringLiteral("00.0"))); }

void settriggeroff()
{
    st.triggerrun = 0;
    sendSetting(QStringLiteral("#tr0"));
}

// A step is answered by the block itself, which the acquisition reads; only the echo is checked.
void stepold()
{
    if (st.portopen != 1)
        return;
    st.command = QStringLiteral("#ss1");
    sendecho();
}

void stepnew()
{
    if (st.portopen != 1)
        return;
    st.command = QStringLiteral("#ss2");
    sendecho();
}

}  // namespace kw
