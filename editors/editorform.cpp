#include "editors/editorform.h"

#include "shell/forms.h"
#include "shell/uihooks.h"

#include <QCloseEvent>
#include <QEvent>
#include <QMdiSubWindow>

namespace kw {

bool EditorForm::event(QEvent *e)
{
    if (e->type() == QEvent::WindowActivate)
        activate();
    else if (e->type() == QEvent::WindowDeactivate)
        deactivate();
    return QWidget::event(e);
}

void EditorForm::showEvent(QShowEvent *e)
{
    QWidget::showEvent(e);
    // Inside the frame the sub-window is what gets activated; the form follows it.
    auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget());
    if (!frame || followsFrame_)
        return;
    followsFrame_ = true;
    connect(frame, &QMdiSubWindow::windowStateChanged, this, [this](Qt::WindowStates before, Qt::WindowStates now) {
        const bool was = before.testFlag(Qt::WindowActive);
        const bool is = now.testFlag(Qt::WindowActive);
        if (is && !was)
            activate();
        else if (was && !is)
            deactivate();
    });
}

void EditorForm::closeEvent(QCloseEvent *e)
{
    deactivate();
    // A name edited in the head of a definition shows in the panels' lists from now on.
    if (uiHooks().definitionListsChanged)
        uiHooks().definitionListsChanged();
    QWidget::closeEvent(e);
}

void openEditor(Family family)
{
    const QString name = QString::fromUtf8(familyText(family).editorForm);
    if (auto *form = qobject_cast<EditorForm *>(showForm(name)))
        form->activate();
}

EditorForm *loadedEditor(Family family)
{
    return qobject_cast<EditorForm *>(loadedForm(QString::fromUtf8(familyText(family).editorForm)));
}

}  // namespace kw
