#pragma once
// AutoStore: the live trace stored at fixed intervals as measurement files under running numbers.
// The routines work on the record; the form autost shows what they leave there.

#include <QString>
#include <cstdint>

namespace kw {

// The interval bounds in seconds, and the counter value the numbering stops at.
constexpr int32_t kAutostoreMinInterval = 5;
constexpr int32_t kAutostoreMaxInterval = 3600;
constexpr int32_t kAutostoreCountLimit = 2147483600;

// "Select &Filename": the base name from the save dialog, its ".mes" cut off. False when the
// pointer is busy or the dialog was cancelled.
bool autostoreChooseFile();
// "&Start" / "Pause": starts, or pauses keeping the count. Ticks Auto once connected.
void autostoreStartPause();
// "S&top": stops and starts the numbering again from the first file.
void autostoreStop();
// "E&xit": resets the count and unticks Auto; false while the pointer is busy (the form stays).
bool autostoreExit();
// The interval typed into the form, clamped; the text to show back.
QString autostoreTakeInterval(const QString &text);

// The file the next storage writes: base + running number ("" for 0) + ".mes".
QString autostoreFileName();
// One storage, when Timer1 finds the time has come. Returns the name of the file written.
QString autostoreOnce();

}  // namespace kw
