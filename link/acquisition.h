#pragma once
// Trace acquisition: fetching a trace from the analyser as a sample block. Three ways in: the live
// path asks with "#bm1"; after a step, old firmware reports "RD" and is then asked; newer firmware
// sends the block by itself, with its centre frequency in the trailer.

namespace kw {

// Every shown trace, then the settings and the plot (normal mode).
void readtraces();
// One block of whatever vmtrace stands at, stored; the pointer stays busy, nothing is drawn.
void readsweep();
// One stepped block after "#ss1"/"#ss2", left unconverted in rawblock.
void readstep();

void readsampleblock();
void readblockwithrd();
void readstepblock();

}  // namespace kw
