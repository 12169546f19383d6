#include "editors/editorwidgets.h"

#include "platform/vbformat.h"
#include "shell/state.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace kw {

NumberBox::NumberBox(const QString &objectName, bool negative, QWidget *parent) : QLineEdit(parent), negative_(negative)
{
    setObjectName(objectName);
}

void NumberBox::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        emit entered();
        return;
    }
    if (key == Qt::Key_Backspace || key == Qt::Key_Delete || key == Qt::Key_Left || key == Qt::Key_Right ||
        key == Qt::Key_Home || key == Qt::Key_End || key == Qt::Key_Tab || key == Qt::Key_Backtab ||
        event->matches(QKeySequence::SelectAll) || event->matches(QKeySequence::Copy)) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    const QString text = event->text();
    if (text.size() != 1)
        return;
    const QChar c = text[0];
    const QChar mark(st.decimalchar);
    if (c == QLatin1Char(',') || c == QLatin1Char('.') || c == mark)
        insert(QString(mark));
    else if (c.isDigit() || (negative_ && c == QLatin1Char('-')))
        insert(QString(c));
}

PickList::PickList(const QString &objectName, QWidget *parent) : QComboBox(parent)
{
    setObjectName(objectName);
    setEditable(true);
    lineEdit()->setReadOnly(true);
    setInsertPolicy(QComboBox::NoInsert);
    connect(this, &QComboBox::activated, this, [this](int index) { emit chosen(itemText(index)); });
}

void PickList::setItems(const QStringList &names)
{
    const QString shown = currentText();
    const QSignalBlocker block(this);
    clear();
    addItems(names);
    setEditText(shown);
}

void PickList::setShownText(const QString &text)
{
    const QSignalBlocker block(this);
    const int at = findText(text, Qt::MatchFixedString);
    if (at >= 0 && itemText(at) == text)
        setCurrentIndex(at);
    setEditText(text);
}

void PickList::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        emit chosen(currentText());
        return;
    }
    if (key == Qt::Key_F4 || (key == Qt::Key_Down && (event->modifiers() & Qt::AltModifier)) || key == Qt::Key_Space) {
        showPopup();
        return;
    }
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        QComboBox::keyPressEvent(event);
        return;
    }
    event->accept();
}

NameBox::NameBox(const QString &objectName, int limit, QWidget *parent) : QLineEdit(parent), limit_(limit)
{
    setObjectName(objectName);
}

void NameBox::keyPressEvent(QKeyEvent *event)
{
    const QString typed = event->text();
    const bool character = typed.size() == 1 && typed[0].isPrint() && !(event->modifiers() & Qt::ControlModifier);
    if (character && limit_ > 0 && vbTrim(text()).size() > limit_)
        return;
    QLineEdit::keyPressEvent(event);
}

}  // namespace kw
