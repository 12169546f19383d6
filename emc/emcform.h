#pragma once
// The form emc, "EMC": choose a test, run it, and choose what the plot shows of the run.

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kw {

class Data;
class DBCombo;

class EmcForm : public QWidget {
    Q_OBJECT
public:
    explicit EmcForm(QWidget *parent = nullptr);
    ~EmcForm() override;

    // The controls follow the record after a test was loaded.
    void showLoadedTest();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void installHooks();
    void uninstallHooks();
    void testChosen();
    void offsetEntered();

    Data *data_[6] = {};
    DBCombo *combo1_ = nullptr;
    QPushButton *command_[5] = {};
    QLabel *label1_ = nullptr;
    QLabel *label3_ = nullptr;
    QCheckBox *check_[9] = {};
    QLineEdit *text1_ = nullptr;
    QString caption_;
};

}  // namespace kw
