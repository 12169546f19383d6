#pragma once
// The bound combo: an editable combo whose list is one field of every row of a row-source Data
// control, and whose text can follow one field of the current row of a data-source Data control.
//
//     auto *combo = new DBCombo(this);
//     combo->setObjectName("DBCombo1");
//     combo->setRowSource(data1, "unitname");     // the list; rebuilt at each Refresh of data1
//     combo->setDataSource(data2, "unit");        // optional: the text follows data2's current row
//     combo->keyPress = [](int &key) { if (key == 13) { ...; } key = 0; };   // 0 drops the key
//     connect(combo, &DBCombo::listChosen, ...);  // an entry taken from the list
//
// Typed characters (Return 13, Backspace 8, Escape 27 and printable ones) pass keyPress first; a
// form that sets them to 0 swallows them, as the selection combos do. Return never adds an entry to
// the list and never counts as a choice from it: the form acts on it in keyPress.

#include <QComboBox>
#include <QPointer>
#include <functional>

namespace kw {

class Data;

class DBCombo : public QComboBox {
    Q_OBJECT
public:
    explicit DBCombo(QWidget *parent = nullptr);

    void setRowSource(Data *data, const QString &listField);
    Data *rowSource() const { return rowSource_; }
    QString listField() const { return listField_; }
    void setDataSource(Data *data, const QString &dataField);
    Data *dataSource() const { return dataSource_; }
    QString dataField() const { return dataField_; }

    // Reads the list again from the row source; the text stays.
    void refill();

    QString Text() const { return currentText(); }
    void setText(const QString &text);

    // The key-press event: the character code, set to 0 to drop the key.
    std::function<void(int &keyAscii)> keyPress;

signals:
    void listChosen();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool filterKey(QKeyEvent *event);  // true when the key is used up
    void showBoundField();

    QPointer<Data> rowSource_;
    QString listField_;
    QPointer<Data> dataSource_;
    QString dataField_;
};

}  // namespace kw
