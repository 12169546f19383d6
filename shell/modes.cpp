#include "shell/modes.h"

#include "live/cycle.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "shell/uihooks.h"

#include <QAction>
#include <QPushButton>

namespace kw {

namespace {

const QString kPanels[] = {QStringLiteral("measur"), QStringLiteral("track"), QStringLiteral("detec")};
const QString kEmcForm = QStringLiteral("emc");

void hideUncal()
{
    if (uiHooks().uncalVisible)
        uiHooks().uncalVisible(false);
}

}  // namespace

void tickModeMenu(bool emcMode)
{
    Mdi *window = mdi();
    if (!window)
        return;
    if (QAction *emc = window->menuEntry(QStringLiteral("mnuemc")))
        emc->setChecked(emcMode);
    if (QAction *normal = window->menuEntry(QStringLiteral("mnunormal")))
        normal->setChecked(!emcMode);
}

void enableToolbox(bool enabled)
{
    Mdi *window = mdi();
    if (!window || !window->toolPanel())
        return;
    if (auto *toolbox = window->toolPanel()->findChild<QPushButton *>(QStringLiteral("Command6")))
        toolbox->setEnabled(enabled);
}

void showModeForms(bool emcMode)
{
    if (emcMode) {
        for (const QString &panel : kPanels)
            unloadForm(panel);
        showForm(kEmcForm);
    } else {
        for (const QString &panel : kPanels)
            showForm(panel);
        unloadForm(kEmcForm);
    }
}

// mode changes last in both: eraseall still draws in the mode that is being left.
void mnuemc()
{
    tickModeMenu(true);
    enableToolbox(false);
    hideUncal();
    showModeForms(true);
    eraseall();
    st.mode = 1;
}

void mnunormal()
{
    tickModeMenu(false);
    hideUncal();
    enableToolbox(true);
    st.viewmaxhold = 0;
    st.viewaverage = 0;
    st.viewb = 0;
    st.viewab = 0;
    st.viewsample = 1;
    showModeForms(false);
    eraseall();
    st.mode = 0;
}

}  // namespace kw
