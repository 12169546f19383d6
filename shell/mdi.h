#pragma once
// The main window: the frame of the child forms, the menu and the tool bar panel.

#include <QMainWindow>

class QMdiArea;
class QMdiSubWindow;
class QAction;

namespace kw {

class ToolPanel;

class Mdi : public QMainWindow {
    Q_OBJECT
public:
    Mdi();
    ~Mdi() override;

    QMdiArea *area() const { return area_; }
    ToolPanel *toolPanel() const { return picture1_; }
    // A menu entry by its name ("mnuemc"); nullptr when there is none.
    QAction *menuEntry(const QString &name) const;

    // Shows a child form inside the frame; a form already shown is brought forward.
    QMdiSubWindow *showChild(QWidget *form);
    // The child form of that objectName, or nullptr when it is not loaded.
    QWidget *child(const QString &name) const;
    void unloadChild(const QString &name);

    // The orderly exit of "E&xit": disconnect, write setting.def, close.
    void exitProgram();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void refreshCaption();
    void refreshToolbar();

    QMdiArea *area_ = nullptr;
    ToolPanel *picture1_ = nullptr;
};

// The main window while the program runs, nullptr before and after.
Mdi *mdi();

}  // namespace kw
