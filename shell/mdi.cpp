#include "shell/mdi.h"

#include "shell/boxcom.h"
#include "shell/forms.h"
#include "shell/menu.h"
#include "shell/trform.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "shell/uihooks.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QVBoxLayout>

namespace kw {

namespace {
Mdi *theWindow = nullptr;
}

Mdi *mdi() { return theWindow; }

Mdi::Mdi()
{
    theWindow = this;
    setObjectName(QStringLiteral("MDI"));
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    picture1_ = new ToolPanel(central);
    area_ = new QMdiArea(central);
    area_->setObjectName(QStringLiteral("mdiArea"));
    layout->addWidget(picture1_);
    layout->addWidget(area_, 1);
    setCentralWidget(central);
    resize(1200, 850);

    registerAllForms();
    buildMainMenu(*this);

    uiHooks().captionChanged = [this] { refreshCaption(); };
    uiHooks().toolbarChanged = [this] { refreshToolbar(); };
    uiHooks().showTransmission = [this] {
        if (!child(QStringLiteral("Tr")))
            showChild(new TrForm);
    };
    onMenu(*this, QStringLiteral("mnuconf"), [](Mdi &window) {
        if (st.busycursor == 1)
            return;
        if (QWidget *form = window.child(QStringLiteral("boxcom")))
            window.showChild(form);
        else
            window.showChild(new Boxcom);
    });
}

Mdi::~Mdi()
{
    uiHooks() = UiHooks{};
    if (theWindow == this)
        theWindow = nullptr;
}

QAction *Mdi::menuEntry(const QString &name) const { return findChild<QAction *>(name); }

QMdiSubWindow *Mdi::showChild(QWidget *form)
{
    for (QMdiSubWindow *sub : area_->subWindowList()) {
        if (sub->widget() == form) {
            sub->show();
            area_->setActiveSubWindow(sub);
            return sub;
        }
    }
    QMdiSubWindow *sub = area_->addSubWindow(form);
    sub->setObjectName(form->objectName() + QStringLiteral("Window"));
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowTitle(form->windowTitle());
    sub->show();
    return sub;
}

QWidget *Mdi::child(const QString &name) const
{
    for (QMdiSubWindow *sub : area_->subWindowList())
        if (sub->widget() && sub->widget()->objectName() == name)
            return sub->widget();
    return nullptr;
}

void Mdi::unloadChild(const QString &name)
{
    for (QMdiSubWindow *sub : area_->subWindowList())
        if (sub->widget() && sub->widget()->objectName() == name)
            sub->close();
}

void Mdi::exitProgram() { mnuBeenden(*this); }

void Mdi::closeEvent(QCloseEvent *event)
{
    unloadMain();
    event->accept();
}

void Mdi::refreshCaption() { setWindowTitle(st.caption); }

void Mdi::refreshToolbar() { picture1_->refreshFromState(); }

}  // namespace kw
