#pragma once
// What the editors and their dialogs share as windows: a form that shows the family's name in
// work when it is activated, and the way the dialogs open an editor on that name.

#include "editors/family.h"

#include <QWidget>

namespace kw {

class EditorForm : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    // Activate: go to the name in work and repaint from the database.
    virtual void activate() = 0;
    // Deactivate: keep what the bound controls hold and note the name in work.
    virtual void deactivate() = 0;

protected:
    bool event(QEvent *e) override;
    void showEvent(QShowEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    bool followsFrame_ = false;
};

// Opens (or brings back) the family's editor on its name in work.
void openEditor(Family family);
// The editor of the family when it is loaded, for the dialogs that refresh it.
EditorForm *loadedEditor(Family family);

}  // namespace kw
