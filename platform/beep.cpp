#include "platform/beep.h"

#include <QApplication>

namespace kw {

namespace {
int beeps = 0;
}

void beep()
{
    ++beeps;
    QApplication::beep();
}

int beepCount() { return beeps; }

}  // namespace kw
