#include "live/toolbar.h"

#include "live/cycle.h"
#include "plot/printforms.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/toolpanel.h"
#include "shell/uihooks.h"

#include <QAction>
#include <QMouseEvent>
#include <QPushButton>

namespace kw {

namespace {

QPushButton *button(ToolPanel *panel, const char *name, const char *caption)
{
    auto *b = new QPushButton(QString::fromLatin1(caption), panel);
    b->setObjectName(QString::fromLatin1(name));
    b->setFocusPolicy(Qt::NoFocus);
    panel->addControl(b);
    return b;
}

}  // namespace

void addToolButtons(Mdi &window)
{
    ToolPanel *panel = window.toolPanel();
    if (panel->findChild<QPushButton *>(QStringLiteral("Command2")))
        return;
    QPushButton *print = button(panel, "Command1", "Print");
    QPushButton *read = button(panel, "Command2", "Read");
    QPushButton *setRead = button(panel, "Command3", "Set/Read");
    QPushButton *erase = button(panel, "Command4", "Erase");
    QPushButton *notes = button(panel, "Command5", "Notes");
    QPushButton *toolbox = button(panel, "Command6", "Toolbox");
    toolbox->hide();  // shown for firmware above 1.63
    uiHooks().toolboxVisible = [toolbox](bool visible) { toolbox->setVisible(visible); };

    QObject::connect(read, &QPushButton::clicked, &window, [&window] {
        Read();
        // A fresh read may be saved again, also after a file was loaded.
        if (QAction *save = window.menuEntry(QStringLiteral("mnusmeasurement")))
            save->setEnabled(true);
    });
    QObject::connect(print, &QPushButton::clicked, &window, [] { showPrintSettings(); });
    QObject::connect(setRead, &QPushButton::clicked, &window, [] { SetRead(); });
    QObject::connect(erase, &QPushButton::clicked, &window, [] { eraseall(); });
    QObject::connect(notes, &QPushButton::clicked, &window, [] { showForm(QStringLiteral("notesfrm")); });
    // Toolbox acts on the release of the button: continuous reading ends, then setsingle opens.
    QObject::connect(toolbox, &QPushButton::released, &window, [] {
        toolboxPressed();
        showForm(QStringLiteral("setsingle"));
    });
}

}  // namespace kw
