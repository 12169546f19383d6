#pragma once
// The clock the system reads: seconds since local midnight as a 32-bit float (it restarts at 0 at
// midnight and is quantised by the float), and the date-time now as days since 30 Dec 1899.

#include <functional>

namespace kw {

float timerSeconds();
double nowDate();  // whole seconds

// Tests replace the clock; an empty function restores the system clock.
void setTimerSource(std::function<float()> source);
void setNowSource(std::function<double()> source);

}  // namespace kw
