#pragma once
// The passes of an EMC run over the band of the loaded test.

namespace kw {

// One sweep pass in 5 MHz slices with secondpass and ambientphase already set; on return the
// pass is over (and, after a DUT-on pass, the marked rows have been measured again).
void sweeprun();
// Begins a stepped pass and returns; Timer2 then carries it a step a tick.
void startstepped();
// One step of a stepped pass, called with Timer2 disabled; enables it again while the pass goes on.
void steptick();
// Whether Timer2 stands enabled for the next step (tests without a main window tick by hand).
bool steppedpending();

}  // namespace kw
