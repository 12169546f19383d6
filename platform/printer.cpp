#include "platform/printer.h"

#include <QCoreApplication>
#include <QPrinter>

namespace kw {

namespace {
QPrinter *thePrinter = nullptr;
}

QPrinter &printer()
{
    if (!thePrinter) {
        thePrinter = new QPrinter(QPrinter::HighResolution);
        // The print system's handles must go while the application still stands.
        qAddPostRoutine([] {
            delete thePrinter;
            thePrinter = nullptr;
        });
    }
    return *thePrinter;
}

}  // namespace kw
