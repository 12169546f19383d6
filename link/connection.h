#pragma once
// Turning a closed serial port into a connected, identified analyser and back.

namespace kw {

void opencomport();
void findunit();
void connectunit();
void disconnectunit();
void autosearch();
void warmupwait();
void readwarmup();

// Around every longer activity: the hourglass and busycursor.
void busypointer();
void normalpointer();

// The firmware text as a number, with the system's decimal mark, for the threshold tests.
float firmwareNumber();

}  // namespace kw
