#pragma once
// The three buttons of grafik's panel that work with cursor 1 and the centre frequency.

namespace kw {

// Command1 "CA -> PK": cursor 1 to the highest point the last pass saw.
void cursorToPeak();
// Command2 "CA = CF": the centre frequency to cursor 1, sent to the analyser.
void centreOnCursor();
// Command3 "2 * CF": twice the centre frequency, sent to the analyser.
void doubleCentre();

}  // namespace kw
