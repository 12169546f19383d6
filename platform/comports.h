#pragma once
// Port numbers 1..4 to device names: COM1..COM4 on Windows, /dev/ttyS0..3 on Linux, each
// replaceable by a line "ComN=device" in ports.def beside setting.def.

#include <QString>

namespace kw {

QString comPortDevice(int port);
// Forgets what was read from ports.def, so the next look-up reads it again.
void reloadComPorts();

}  // namespace kw
