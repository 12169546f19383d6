#pragma once
// The two crosshairs over the plot, drawn in the inverting mode at the end of every pass and on
// every move, and their read-outs. A move draws at most eight lines and touches no trace: a line
// drawn twice in the inverting mode leaves the picture as it was.

#include <QString>
#include <cstdint>

namespace kw {

// The read-out captions of grafik, as last shown; the report prints them as they stand.
struct CursorReadouts {
    QString freqa, leva;    // cursor 1
    QString freqb, levb;    // cursor 2
    QString freqab, levab;  // the difference
};
const CursorReadouts &cursorReadouts();

// Clamps the cursors, takes the old lines away (unless the last pass already did), draws the new
// ones and sets the read-outs.
void DrawCursors();

// The frequency (MHz) under x 0..1000000 on the axis of the last pass; never negative.
float cursorFrequency(int32_t x);

// The read-out of cursor 2's frequency: its own number, but whether the M or the G form is used
// is decided by cursor 1's frequency.
QString cursor2FrequencyText(float frequency2, float frequency1);

}  // namespace kw
