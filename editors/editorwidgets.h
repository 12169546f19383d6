#pragma once
// Small controls of the editor forms: a number box that takes only what a number of its kind
// can hold, a pick list that can't be typed into, and a name box with the 80-character rule.

#include <QComboBox>
#include <QLineEdit>
#include <QStringList>

namespace kw {

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

// A list of names to choose from: keys other than Enter and the ones that open the list are
// swallowed; a choice from the list or Enter emits chosen() with the text.
class PickList : public QComboBox {
    Q_OBJECT
public:
    explicit PickList(const QString &objectName, QWidget *parent = nullptr);
    // Fills the list and shows text, which need not be in it.
    void setItems(const QStringList &names);
    void setShownText(const QString &text);
    QString shownText() const { return currentText(); }
signals:
    void chosen(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

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
