#include "shell/startup.h"

#include "live/cycle.h"
#include "live/timers.h"
#include "live/toolbar.h"
#include "platform/progdir.h"
#include "plot/grafik.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "shell/uihooks.h"
#include "store/appdb.h"
#include "store/settingfile.h"

#include <QAction>
#include <QPushButton>

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
    // order. They join here as they are written.
    const bool emcMode = st.mode != 0;
    st.measext = emcMode ? QStringLiteral(".emc") : QStringLiteral(".mes");
    if (QAction *a = window.menuEntry(QStringLiteral("mnuemc")))
        a->setChecked(emcMode);
    if (QAction *a = window.menuEntry(QStringLiteral("mnunormal")))
        a->setChecked(!emcMode);
    if (auto *toolbox = window.toolPanel()->findChild<QPushButton *>(QStringLiteral("Command6")))
        toolbox->setEnabled(!emcMode);
    notifyToolbar();
    if (emcMode)
        showForm(QStringLiteral("emc"));

    eraseall();
}

void unloadMain() { closeApplicationDatabase(); }

}  // namespace kw
