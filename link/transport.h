#pragma once
// The serial transport. Every routine reads st.command and leaves st.reply; failure is
// st.serialerror, told to the user once by serialfault.

#include <QString>
#include <cstdint>

namespace kw {

class SerialControl;
// The serial control of the main window (Comm1).
SerialControl &comm1();

void sendecho();
void sendcommand();
void querycommand();
void readreply();
QString readchar();
uint8_t readbyte();
void serialfault();
// The link is down: portopen 0, RM and Auto unticked.
void marklinkdown();

// Waits for a received byte: true when one is there, false after more than serialtimeout seconds.
// Blocks in the OS between looks at the clock; never runs the event loop.
bool waitforbyte();
// The same for at least count bytes (the close of a sample block).
bool waitforbytes(int count);

}  // namespace kw
