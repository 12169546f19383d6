#pragma once
// Text and check boxes bound to a field of a recordset's current row. The form shows the row with
// showRow() after it moved the recordset, and calls keepRow() before it moves it again or closes:
// a box whose content the user changed writes it into that row then (Edit, the field, Update),
// the way bound controls write on their own when the current row changes. Errors are passed
// over: a row that is gone or a text that does not fit the column leaves the row as it was.

#include "platform/recordset.h"

#include <QCheckBox>
#include <QLineEdit>

namespace kw {

class BoundTextBox : public QLineEdit {
    Q_OBJECT
public:
    BoundTextBox(const QString &objectName, const QString &field, QWidget *parent = nullptr);
    void bind(Recordset *recordset) { recordset_ = recordset; }
    const QString &dataField() const { return field_; }
    void showRow();
    // Whether the row was written.
    bool keepRow();

private:
    Recordset *recordset_ = nullptr;
    QString field_;
    QString shown_;
    bool numeric_ = false;  // the row held a number: the text is read in the locale
};

class BoundCheckBox : public QCheckBox {
    Q_OBJECT
public:
    BoundCheckBox(const QString &objectName, const QString &caption, const QString &field, QWidget *parent = nullptr);
    void bind(Recordset *recordset) { recordset_ = recordset; }
    void showRow();
    bool keepRow();

private:
    Recordset *recordset_ = nullptr;
    QString field_;
    bool shown_ = false;
};

// Writes one changed field into the current row; false when nothing was written.
bool writeBoundField(Recordset *recordset, const QString &field, const QVariant &value);

}  // namespace kw
