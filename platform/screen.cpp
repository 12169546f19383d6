#include "platform/screen.h"

#include <QApplication>
#include <QCursor>
#include <QEventLoop>
#include <QTimer>

namespace kw {

namespace {
int pointerNumber = kPointerNormal;
}

void setScreenPointer(int number)
{
    if (number == pointerNumber)
        return;
    pointerNumber = number;
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    if (number == kPointerHourglass)
        QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    else
        while (QApplication::overrideCursor())
            QApplication::restoreOverrideCursor();
}

int screenPointer() { return pointerNumber; }

void doEvents()
{
    if (QCoreApplication::instance())
        QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void waitEvents(int milliseconds)
{
    if (!QCoreApplication::instance())
        return;
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace kw
