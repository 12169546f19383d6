#include "platform/dbcombo.h"

#include "platform/datacontrol.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>

namespace kw {

DBCombo::DBCombo(QWidget *parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);  // the text is what was typed; no guessing from the list
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this](int) { emit listChosen(); });
}

void DBCombo::setRowSource(Data *data, const QString &listField)
{
    if (rowSource_)
        disconnect(rowSource_, nullptr, this, nullptr);
    rowSource_ = data;
    listField_ = listField;
    if (data)
        connect(data, &Data::refreshed, this, &DBCombo::refill);
    refill();
}

void DBCombo::setDataSource(Data *data, const QString &dataField)
{
    if (dataSource_ && dataSource_ != rowSource_)
        disconnect(dataSource_, nullptr, this, nullptr);
    dataSource_ = data;
    dataField_ = dataField;
    if (data)
        connect(data, &Data::rowMoved, this, &DBCombo::showBoundField);
    showBoundField();
}

void DBCombo::refill()
{
    const QString text = currentText();
    const QSignalBlocker quiet(this);
    clear();
    if (rowSource_)
        addItems(rowSource_->listOf(listField_));
    setEditText(text);
}

void DBCombo::setText(const QString &text)
{
    const QSignalBlocker quiet(this);
    setEditText(text);
}

void DBCombo::showBoundField()
{
    if (dataSource_)
        setText(dataSource_->currentText(dataField_));
}

bool DBCombo::filterKey(QKeyEvent *event)
{
    const QString typed = event->text();
    if (typed.size() != 1 || !keyPress)
        return false;
    // An open list takes Return as the choice of its highlighted entry.
    if (view()->isVisible() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        return false;
    int key = typed.at(0).unicode();
    keyPress(key);
    if (key == 0 || key == 13)
        return true;
    if (key != typed.at(0).unicode()) {
        QKeyEvent changed(event->type(), 0, event->modifiers(), QString(QChar(key)));
        lineEdit()->event(&changed);
        return true;
    }
    return false;
}

void DBCombo::keyPressEvent(QKeyEvent *event)
{
    if (filterKey(event)) {
        event->accept();
        return;
    }
    QComboBox::keyPressEvent(event);
}

bool DBCombo::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lineEdit() && event->type() == QEvent::KeyPress && filterKey(static_cast<QKeyEvent *>(event)))
        return true;
    return QComboBox::eventFilter(watched, event);
}

}  // namespace kw
