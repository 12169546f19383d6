#pragma once
// Picture1: the tool bar panel of the main window. Its buttons act on the shared record; the fifth
// click on the panel itself opens the transmission debug boxes.

#include <QFrame>

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace kw {

class ToolPanel : public QFrame {
    Q_OBJECT
public:
    explicit ToolPanel(QWidget *parent = nullptr);

    QCheckBox *ckrm() const { return ckrm_; }
    QCheckBox *ckauto() const { return ckauto_; }
    // Adds a control at the end of the panel.
    void addControl(QWidget *control);
    // Ticks of ckrm and ckauto from the record, without running their handlers.
    void refreshFromState();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void rmClicked(bool ticked);

    QHBoxLayout *layout_ = nullptr;
    QCheckBox *ckrm_ = nullptr;
    QCheckBox *ckauto_ = nullptr;
};

}  // namespace kw
