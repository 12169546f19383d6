#pragma once
// The operator's hand on the bench while the simulator runs: the device switched on or off, the
// antenna turned, by lines such as "dut off" or "antenna vertical" in a control file.

#include "sim/emissions.h"

#include <QString>

namespace kt {

// Applies each line it knows ("dut on", "dut off", "antenna horizontal", "antenna vertical",
// any case, '#' starts a remark); returns the lines it did not understand.
QStringList applyBenchText(const QString &text, SimScene &scene);

}  // namespace kt
