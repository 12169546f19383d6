#include "shell/keyfilter.h"

#include "shell/state.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace kw {

namespace {

constexpr int kReturn = 13;
constexpr int kBackspace = 8;
constexpr int kMinus = 45;

class KeyPressFilter : public QObject {
public:
    KeyPressFilter(QObject *parent, std::function<void(KeyPress &)> handler)
        : QObject(parent), handler_(std::move(handler))
    {
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || inner_)
            return false;
        auto *keyEvent = static_cast<QKeyEvent *>(event);
        KeyPress key{asciiOf(*keyEvent)};
        // Keys without a character (arrows, Delete, function keys) are not key presses here.
        if (key.ascii == 0)
            return false;
        const int typed = key.ascii;
        handler_(key);
        if (key.ascii == 0)
            return true;
        if (key.ascii == typed)
            return false;
        // Another key than the one pressed: type that one instead.
        QKeyEvent replaced(QEvent::KeyPress, 0, keyEvent->modifiers(), QString(QChar(key.ascii)));
        inner_ = true;
        QApplication::sendEvent(watched, &replaced);
        inner_ = false;
        return true;
    }

private:
    static int asciiOf(const QKeyEvent &e)
    {
        if (e.key() == Qt::Key_Return || e.key() == Qt::Key_Enter)
            return kReturn;
        if (e.key() == Qt::Key_Backspace)
            return kBackspace;
        const QString text = e.text();
        return text.size() == 1 && text[0].unicode() >= 32 ? text[0].unicode() : 0;
    }

    std::function<void(KeyPress &)> handler_;
    bool inner_ = false;
};

}  // namespace

void onKeyPress(QWidget *control, std::function<void(KeyPress &)> handler)
{
    control->installEventFilter(new KeyPressFilter(control, std::move(handler)));
}

void numberKey(KeyPress &key)
{
    if (key.ascii == ',' || key.ascii == '.')
        key.ascii = st.decimalchar;
    const bool digit = key.ascii >= '0' && key.ascii <= '9';
    if (!digit && key.ascii != st.decimalchar && key.ascii != kBackspace && key.ascii != kMinus && key.ascii != kReturn)
        key.ascii = 0;
}

}  // namespace kw
