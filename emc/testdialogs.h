#pragma once
// The small dialogs beside the form test: "New / Copy Test" adds a test or copies one test's
// settings onto another, "Delete test" removes one.

#include <QWidget>

class QLineEdit;

namespace kw {

class Data;
class DBCombo;

class NewTestForm : public QWidget {
    Q_OBJECT
public:
    explicit NewTestForm(QWidget *parent = nullptr);
    void addNew();  // Command1
    void copy();    // Command2

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void rememberTarget();

    Data *data2_ = nullptr;  // target
    Data *data3_ = nullptr;  // source
    DBCombo *combo1_ = nullptr;
    DBCombo *combo2_ = nullptr;
    QLineEdit *text1_ = nullptr;
};

class DelTestForm : public QWidget {
    Q_OBJECT
public:
    explicit DelTestForm(QWidget *parent = nullptr);
    void deleteTest();  // Command1

private:
    Data *data2_ = nullptr;
    DBCombo *combo2_ = nullptr;
};

}  // namespace kw
