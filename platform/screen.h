#pragma once
// Screen services the routines use without knowing any widget: the pointer and the yield points.

namespace kw {

constexpr int kPointerNormal = 0;
constexpr int kPointerHourglass = 11;

void setScreenPointer(int number);
int screenPointer();

// Lets clicks and timers in. Only the named yield points of long activities call it.
void doEvents();

}  // namespace kw
