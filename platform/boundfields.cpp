#include "platform/boundfields.h"

#include "platform/vbformat.h"

namespace kw {

namespace {

bool onRow(const Recordset *rs)
{
    try {
        return rs && rs->isOpen() && !rs->Bof() && !rs->Eof();
    } catch (const VbError &) {
        return false;
    }
}

}  // namespace

bool writeBoundField(Recordset *recordset, const QString &field, const QVariant &value)
{
    if (!onRow(recordset))
        return false;
    try {
        recordset->Edit();
        recordset->SetField(field, value);
        recordset->Update();
        return true;
    } catch (const VbError &) {
        try {
            recordset->CancelUpdate();
        } catch (const VbError &) {
        }
        return false;
    }
}

BoundTextBox::BoundTextBox(const QString &objectName, const QString &field, QWidget *parent)
    : QLineEdit(parent), field_(field)
{
    setObjectName(objectName);
}

void BoundTextBox::showRow()
{
    QString text;
    numeric_ = false;
    if (onRow(recordset_)) {
        try {
            const QVariant v = recordset_->Field(field_);
            numeric_ = v.typeId() == QMetaType::Double || v.typeId() == QMetaType::LongLong;
            if (!v.isNull())
                text = v.typeId() == QMetaType::Double ? vbCStr(float(v.toDouble())) : v.toString();
        } catch (const VbError &) {
        }
    }
    shown_ = text;
    setText(text);
}

bool BoundTextBox::keepRow()
{
    if (text() == shown_)
        return false;
    QVariant value = text();
    if (text().isEmpty()) {
        value = QVariant();
    } else if (numeric_) {
        try {
            value = vbCDbl(text());
        } catch (const VbError &) {
            return false;
        }
    }
    const bool written = writeBoundField(recordset_, field_, value);
    if (written)
        shown_ = text();
    return written;
}

BoundCheckBox::BoundCheckBox(const QString &objectName, const QString &caption, const QString &field, QWidget *parent)
    : QCheckBox(caption, parent), field_(field)
{
    setObjectName(objectName);
}

void BoundCheckBox::showRow()
{
    bool ticked = false;
    if (onRow(recordset_)) {
        try {
            ticked = recordset_->Field(field_).toBool();
        } catch (const VbError &) {
        }
    }
    shown_ = ticked;
    setChecked(ticked);
}

bool BoundCheckBox::keepRow()
{
    if (isChecked() == shown_)
        return false;
    const bool written = writeBoundField(recordset_, field_, isChecked());
    if (written)
        shown_ = isChecked();
    return written;
}

}  // namespace kw
