#pragma once
// The run of a test from the Start button of emc to the finished ".emc" file: the file, the
// connection, and the operator led through polarisations and the DUT switched off and on.

namespace kw {

// Command1 "Start".
void emcStart();
// Command2 "Stop": the pass ends at its next look at stoprun.
void emcStop();
// The last write of a run: the plot range into the settings row of the file.
void runfinish();

// The passes a run calls, replaceable so that a test can watch the sequence without measuring.
struct RunPasses {
    void (*sweep)();
    void (*stepped)();
};
RunPasses &runPasses();

}  // namespace kw
