#pragma once
// setting.def: the workplace saved between runs (placement, port, speed, mode, database path).

namespace kw {

// Steps 2 to 4 of the load: reads setting.def from the program directory, or shows the box and
// takes the defaults.
void readSettingFile();
// Written by the orderly exit.
void writeSettingFile();

}  // namespace kw
