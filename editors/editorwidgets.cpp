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

DBCombo *pickList(const QString &objectName, Data *rowSource, const QString &listField, QWidget *parent,
                  std::function<void(const QString &)> onChoice)
{
    auto *combo = new DBCombo(parent);
    combo->setObjectName(objectName);
    combo->setRowSource(rowSource, listField);
    combo->keyPress = [combo, onChoice](int &key) {
        if (key == 13 && onChoice)
            onChoice(combo->Text());
        key = 0;
    };
    QObject::connect(combo, &DBCombo::listChosen, combo, [combo, onChoice] {
        if (onChoice)
            onChoice(combo->Text());
    });
    return combo;
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
