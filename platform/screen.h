#pragma once
// Screen services the routines use without knowing any widget: the pointer and the yield points.

namespace kw {

constexpr int kPointerNormal = 0;
constexpr int kPointerHourglass = 11;

void setScreenPointer(int number);
int screenPointer();

// Lets clicks and timers in. Only the named yield points of long activities call it.
void doEvents();
// The same for up to that long, sleeping in the OS while nothing happens: the waits of a long
// activity that must stay open to clicks without using the processor.
void waitEvents(int milliseconds);

}  // namespace kw
