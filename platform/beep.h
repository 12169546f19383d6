#pragma once
// The system beep. Counted, so that tests can tell a beep happened without hearing it.

namespace kw {

void beep();
int beepCount();

}  // namespace kw
