#pragma once
// Text and check boxes bound to a field of the current row of a Data control. They show the row
// whenever the control moves, and a box whose content the user changed writes it into the row when
// it is left (Return, focus elsewhere, a click on the check box) and before the control moves on, so
// nothing typed is lost. Errors are passed over: a row that is gone or a text that does not fit the
// column leaves the row as it was, and the box shows it again.

#include "platform/datacontrol.h"

#include <QCheckBox>
#include <QLineEdit>

namespace kw {

class BoundTextBox : public QLineEdit {
    Q_OBJECT
public:
    BoundTextBox(const QString &objectName, const QString &field, QWidget *parent = nullptr);
    void bind(Data *source);
    const QString &dataField() const { return field_; }
    void showRow();
    // Whether the row was written.
    bool keepRow();
signals:
    void written();

private:
    Data *data_ = nullptr;
    QString field_;
    QString shown_;
    bool numeric_ = false;  // the row held a number: the text is read in the locale
};

class BoundCheckBox : public QCheckBox {
    Q_OBJECT
public:
    BoundCheckBox(const QString &objectName, const QString &caption, const QString &field, QWidget *parent = nullptr);
    void bind(Data *source);
    void showRow();
    bool keepRow();
signals:
    void written();

private:
    Data *data_ = nullptr;
    QString field_;
    bool shown_ = false;
};

// Writes one field into the current row of the control; false when nothing was written.
bool writeBoundField(Data &data, const QString &field, const QVariant &value);

}  // namespace kw
