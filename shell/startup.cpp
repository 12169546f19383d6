#include "shell/startup.h"

#include "live/cycle.h"
#include "live/timers.h"
#include "live/toolbar.h"
#include "platform/progdir.h"
#include "plot/grafik.h"
#include "platform/vbformat.h"
#include "shell/mdi.h"
#include "shell/modes.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/appdb.h"
#include "store/settingfile.h"


namespace kw {

namespace {
const QString kOfflineCaption = QStringLiteral("KW3400R - V1.53       Offline");
}

void loadMain(Mdi &window)
{
    resetState();
    st.automessfile = vbTrim(programDirectory()) + QStringLiteral("/AutomessXXX.mes");
    st.decimalchar = vbFormat(1.0, QStringLiteral("#.0")).contains(QLatin1Char(',')) ? 44 : 46;
    st.databasefile = programFile(QStringLiteral("default.mdb"));
    st.caption = kOfflineCaption;
    notifyCaption();

    addToolButtons(window);
    startMainTimers(&window);

    readSettingFile();
    openApplicationDatabase();

    showGrafik(window);
    // Before setting.def is written each form puts its placement into formpos.
    uiHooks().storeFormPositions = [&window] { storeGrafikPlacement(window); };

    // The forms of the mode: emc in EMC mode, measur, track and detec in normal mode, in that
    // order.
    const bool emcMode = st.mode != 0;
    showModeForms(emcMode);
    st.measext = emcMode ? QStringLiteral(".emc") : QStringLiteral(".mes");
    tickModeMenu(emcMode);
    enableToolbox(!emcMode);
    notifyToolbar();

    eraseall();
}

void unloadMain() { closeApplicationDatabase(); }

}  // namespace kw
