#pragma once
// The small dialogs that create, copy and delete definitions: newlim, newlos, newconf and dellim,
// dellos, delconf. They stay open as child windows, so several definitions can be made in a go.

#include "editors/editorform.h"
#include "editors/newcopydelete.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace kw {

class DBCombo;
class NameBox;

class NewCopyDialog : public EditorForm {
    Q_OBJECT
public:
    explicit NewCopyDialog(Family family, QWidget *parent = nullptr);

    void activate() override;
    void deactivate() override;
    void paintForm();

    void addNew();        // Command1
    void copy();          // Command2
    void view();          // Command3
    void pickSource(const QString &text);  // DBCombo1
    void pickTarget(const QString &text);  // DBCombo2

    NameBox *nameBox() const { return text1_; }
    DBCombo *sourceCombo() const { return combo1_; }
    DBCombo *targetCombo() const { return combo2_; }
    NewCopyData &data() { return data_; }

protected:
    void closeEvent(QCloseEvent *e) override;

private:
    NewCopyData data_;
    NameBox *text1_ = nullptr;
    DBCombo *combo1_ = nullptr;
    DBCombo *combo2_ = nullptr;
};

class DeleteDialog : public EditorForm {
    Q_OBJECT
public:
    explicit DeleteDialog(Family family, QWidget *parent = nullptr);

    void activate() override;
    void deactivate() override {}
    void paintForm();

    void deleteNow();                    // Command1
    void pick(const QString &text);      // the combo's key release and mouse release

    QComboBox *combo() const;
    DeleteData &data() { return data_; }

private:
    DeleteData data_;
    DBCombo *combo_ = nullptr;
};

}  // namespace kw
