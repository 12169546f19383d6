#include "platform/keypress.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace kw {

namespace {

class KeyPressFilter : public QObject {
public:
    KeyPressFilter(QWidget *widget, KeyPressHandler handler) : QObject(widget), handler_(std::move(handler)) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || replaying_)
            return false;
        auto *press = static_cast<QKeyEvent *>(event);
        const QString typed = press->text();
        if (typed.size() != 1 || !handler_)
            return false;
        const int original = typed.at(0).unicode();
        int key = original;
        handler_(key);
        if (key == 0)
            return true;
        if (key == original)
            return false;
        // A changed character goes on in place of the typed one.
        QKeyEvent changed(QEvent::KeyPress, 0, press->modifiers(), QString(QChar(key)));
        replaying_ = true;
        QCoreApplication::sendEvent(watched, &changed);
        replaying_ = false;
        return true;
    }

private:
    KeyPressHandler handler_;
    bool replaying_ = false;
};

}  // namespace

void onKeyPress(QWidget *widget, KeyPressHandler handler)
{
    widget->installEventFilter(new KeyPressFilter(widget, std::move(handler)));
}

}  // namespace kw
