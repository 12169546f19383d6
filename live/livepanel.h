#pragma once
// What the three live panels (measur, track, detec) share: their place in the frame from formpos,
// the repaint from the record that refreshforms asks for, and the small helpers of their events.

#include <QWidget>
#include <functional>

#include "shell/forms.h"

class QAbstractButton;
class QButtonGroup;
class QLayout;

namespace kw {

class Mdi;

class LivePanel : public QWidget {
    Q_OBJECT
public:
    // Installs refreshforms, which repaints the loaded panels from then on.
    // leftSlot is the 1-based formpos index of Left; Top and the window state follow it.
    LivePanel(const QString &name, const QString &caption, int leftSlot, QWidget *parent = nullptr);

    // The Paint event: shows what the record holds.
    virtual void repaintFromRecord() = 0;
    // Puts Left, Top and the window state into formpos.
    void storePlacement() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    int leftSlot_;
    bool placed_ = false;
};

// An option array: buttons laid out in the container in that many columns, each with objectName
// name and its index as the id in the group and as the property "Index".
QButtonGroup *optionArray(QWidget *container, const QString &name, const QStringList &captions, int columns = 1);
// Tight spacing: the panels stand beside the plot and should take little of the screen.
void compact(QLayout *layout);
// Sets the button of that index, or none when no button has it.
void setOption(QButtonGroup *group, int index);

// The key press of a number box: a comma or a point becomes the decimal mark, Return runs
// onReturn, and keys other than digits, the mark, backspace and minus are dropped.
void numberBoxKey(int &key, const std::function<void()> &onReturn);

// "#dm1" again where the calculation runs, so that a changed setting restarts it.
void restartCalculation();

// Repaints the panels that are loaded and in normal window state.
void refreshPanels();
// The repaint of one panel, when it is loaded.
void repaintPanel(const QString &name);
void storePanelPlacements();

// The forms measur, track and detec in the table of forms.
void registerLiveForms();
// Settings menu: "Measurement", "Detectors" and "Tracking" show their panel.
void connectPanelMenu(Mdi &window);

}  // namespace kw
