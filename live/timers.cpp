#include "live/timers.h"

#include "live/cycle.h"
#include "platform/dialogs.h"

#include <QObject>
#include <QTimer>

namespace kw {

namespace {

QTimer *makeTimer(QObject *owner, const char *name, int interval, void (*tick)())
{
    auto *timer = new QTimer(owner);
    timer->setObjectName(QString::fromLatin1(name));
    timer->setInterval(interval);
    QObject::connect(timer, &QTimer::timeout, owner, tick);
    return timer;
}

}  // namespace

void startMainTimers(QObject *owner)
{
    // A box of the program runs its own event loop, in which these timers still fire. A read
    // behind a box would meet the failure the box tells of and tell it again; a step would run
    // the test on while the operator is asked. Timer1 comes again in a second; Timer2 stays
    // enabled and takes its step after the box.
    QTimer *timer1 = makeTimer(owner, "Timer1", 1000, [] {
        if (!boxShowing())
            timer1Tick();
    });
    QTimer *timer2 = makeTimer(owner, "Timer2", 10, [] {
        if (!boxShowing())
            timer2Tick();
    });
    makeTimer(owner, "Timer3", 20, &timer3Tick);
    liveHooks().timer2Enabled = [timer2](bool on) {
        if (on)
            timer2->start();
        else
            timer2->stop();
    };
    QObject::connect(timer2, &QObject::destroyed, [] { liveHooks().timer2Enabled = nullptr; });
    timer1->start();
}

}  // namespace kw
