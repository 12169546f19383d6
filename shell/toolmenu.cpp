#include "shell/toolmenu.h"

#include "live/cycle.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/menu.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QAction>

namespace kw {

void mnuautostore(Mdi &window)
{
    if (QAction *emc = window.menuEntry(QStringLiteral("mnuemc")))
        emc->setChecked(false);
    if (QAction *normal = window.menuEntry(QStringLiteral("mnunormal")))
        normal->setChecked(true);
    if (uiHooks().uncalVisible)
        uiHooks().uncalVisible(false);
    st.viewmaxhold = 0;
    st.viewaverage = 0;
    st.viewb = 0;
    st.viewab = 0;
    st.viewsample = 1;
    for (const char *panel : {"measur", "track", "detec"})
        showForm(QString::fromLatin1(panel));
    unloadForm(QStringLiteral("emc"));
    eraseall();
    st.mode = 0;
    showForm(QStringLiteral("autost"));
}

void connectToolEntries(Mdi &window)
{
    onMenu(window, QStringLiteral("mnuautostore"), &mnuautostore);
    onMenu(window, QStringLiteral("mnussettings"), [](Mdi &) { showForm(QStringLiteral("saveset")); });
    onMenu(window, QStringLiteral("mnulsettings"), [](Mdi &) { showForm(QStringLiteral("loadset")); });
    onMenu(window, QStringLiteral("mnuabout"), [](Mdi &) { showForm(QStringLiteral("about")); });
}

}  // namespace kw
