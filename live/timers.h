#pragma once
// The three timers of the main window: Timer1 (1000 ms, always on) is the live cycle, Timer2
// (10 ms, off until a stepped run enables it) carries that run from block to block, Timer3
// (20 ms) is never enabled.

class QObject;
class QTimer;

namespace kw {

// Makes the timers as children of the main window and starts Timer1.
void startMainTimers(QObject *owner);

}  // namespace kw
