#include "platform/boundfields.h"

#include "platform/vbformat.h"

namespace kw {

bool writeBoundField(Data &data, const QString &field, const QVariant &value)
{
    if (!data.hasCurrentRow())
        return false;
    try {
        data.writeField(field, value);
        return true;
    } catch (const VbError &) {
        return false;
    }
}

BoundTextBox::BoundTextBox(const QString &objectName, const QString &field, QWidget *parent)
    : QLineEdit(parent), field_(field)
{
    setObjectName(objectName);
    connect(this, &QLineEdit::editingFinished, this, [this] { keepRow(); });
}

void BoundTextBox::bind(Data *source)
{
    data_ = source;
    connect(source, &Data::rowMoved, this, &BoundTextBox::showRow);
    connect(source, &Data::validate, this, [this] { keepRow(); });
    showRow();
}

void BoundTextBox::showRow()
{
    QString text;
    numeric_ = false;
    if (data_) {
        const QVariant v = data_->currentValue(field_);
        numeric_ = v.typeId() == QMetaType::Double || v.typeId() == QMetaType::LongLong;
        if (!v.isNull())
            text = v.typeId() == QMetaType::Double ? vbCStr(float(v.toDouble())) : v.toString();
    }
    shown_ = text;
    setText(text);
}

bool BoundTextBox::keepRow()
{
    if (!data_ || text() == shown_)
        return false;
    QVariant value = text();
    if (text().isEmpty()) {
        value = QVariant();
    } else if (numeric_) {
        try {
            value = vbCDbl(text());
        } catch (const VbError &) {
            showRow();
            return false;
        }
    }
    const QString typed = text();
    if (!writeBoundField(*data_, field_, value))
        return false;
    shown_ = typed;
    emit written();
    return true;
}

BoundCheckBox::BoundCheckBox(const QString &objectName, const QString &caption, const QString &field, QWidget *parent)
    : QCheckBox(caption, parent), field_(field)
{
    setObjectName(objectName);
    connect(this, &QCheckBox::clicked, this, [this] { keepRow(); });
}

void BoundCheckBox::bind(Data *source)
{
    data_ = source;
    connect(source, &Data::rowMoved, this, &BoundCheckBox::showRow);
    connect(source, &Data::validate, this, [this] { keepRow(); });
    showRow();
}

void BoundCheckBox::showRow()
{
    const bool ticked = data_ && data_->currentValue(field_).toBool();
    shown_ = ticked;
    setChecked(ticked);
}

bool BoundCheckBox::keepRow()
{
    if (!data_ || isChecked() == shown_)
        return false;
    const bool ticked = isChecked();
    if (!writeBoundField(*data_, field_, ticked)) {
        showRow();
        return false;
    }
    shown_ = ticked;
    emit written();
    return true;
}

}  // namespace kw
