#pragma once
// Small controls of the editor forms: a number box that takes only what a number of its kind
// can hold, a pick list that can't be typed into, and a name box with the 80-character rule.

#include "platform/dbcombo.h"

#include <QLineEdit>
#include <functional>

namespace kw {

class Data;

// Digits, the decimal mark (comma and point both become it) and backspace; minus too when
// negative is allowed. Enter emits entered().
class NumberBox : public QLineEdit {
    Q_OBJECT
public:
    NumberBox(const QString &objectName, bool negative, QWidget *parent = nullptr);
signals:
    void entered();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool negative_;
};

// A bound combo to choose a name from its row source: every key is swallowed, so the list can't
// be typed into; Enter and a choice from the list call onChoice with the text.
DBCombo *pickList(const QString &objectName, Data *rowSource, const QString &listField, QWidget *parent,
                  std::function<void(const QString &)> onChoice);

// A name box that takes no further character once the trimmed text is longer than limit
// (0: no limit). Editing keys still work.
class NameBox : public QLineEdit {
    Q_OBJECT
public:
    NameBox(const QString &objectName, int limit, QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    int limit_;
};

}  // namespace kw
