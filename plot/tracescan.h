#pragma once
// The traces of a live measurement, drawn from the trace arrays.

namespace kw {

// Every shown trace point by point, the peak over them all, and the form caption with the time
// of each shown trace.
void scanArrays();

}  // namespace kw
