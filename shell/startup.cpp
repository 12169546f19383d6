#include "shell/startup.h"

#include "platform/progdir.h"
#include "platform/vbformat.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/appdb.h"
#include "store/settingfile.h"

#include <QAction>

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

    readSettingFile();
    openApplicationDatabase();

    const bool emcMode = st.mode != 0;
    st.measext = emcMode ? QStringLiteral(".emc") : QStringLiteral(".mes");
    if (QAction *a = window.menuEntry(QStringLiteral("mnuemc")))
        a->setChecked(emcMode);
    if (QAction *a = window.menuEntry(QStringLiteral("mnunormal")))
        a->setChecked(!emcMode);
    notifyToolbar();
}

void unloadMain() { closeApplicationDatabase(); }

}  // namespace kw
