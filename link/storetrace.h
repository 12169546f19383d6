#pragma once
// Scaling and storing one received block: raw level bytes in st.rawblock become level counts,
// corrected by the chain and the distance term, and land in the trace that st.vmtrace names.

#include "shell/state.h"

namespace kw {

// The trace array and its date field for a vmtrace value; both nullptr for a value naming none.
struct TraceSlot {
    Trace *trace;
    double *date;
};
TraceSlot traceforvm(int vmtrace);

void storetrace();

}  // namespace kw
