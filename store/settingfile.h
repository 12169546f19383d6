#pragma once
// setting.def: the workplace saved between runs (placement, port, speed, mode, database path).

#include <QByteArray>

namespace kw {

constexpr int kSettingFileSize = 197;

// Steps 2 to 4 of the load: reads setting.def from the program directory, or shows the box and
// takes the defaults.
void readSettingFile();
// Written by the orderly exit.
void writeSettingFile();

// The record as it stands on disk, from the shared state and back. Bytes past the end of a short
// record read as zero.
QByteArray encodeSettingRecord();
void decodeSettingFields(const QByteArray &record);

}  // namespace kw
