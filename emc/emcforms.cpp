#include "emc/emcforms.h"

#include "emc/emcform.h"
#include "emc/passes.h"
#include "emc/testdialogs.h"
#include "emc/testform.h"
#include "live/cycle.h"
#include "shell/forms.h"
#include "shell/menu.h"

namespace kw {

void registerEmcForms()
{
    registerForm(QStringLiteral("test"), [] { return new TestForm; });
    registerForm(QStringLiteral("newtest"), [] { return new NewTestForm; });
    registerForm(QStringLiteral("deltest"), [] { return new DelTestForm; });
    registerForm(QStringLiteral("emc"), [] { return new EmcForm; });
}

void emcMenu(Mdi &window)
{
    onMenu(window, QStringLiteral("mnunedit"), [](Mdi &) { showForm(QStringLiteral("newtest")); });
    onMenu(window, QStringLiteral("mnutestdef"), [](Mdi &) { showForm(QStringLiteral("test")); });
    onMenu(window, QStringLiteral("mnudtest"), [](Mdi &) { showForm(QStringLiteral("deltest")); });
    liveHooks().emcStage = [] { steptick(); };
}

}  // namespace kw
