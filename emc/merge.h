#pragma once
// Results of a run into table measurement of the ".emc" file, each routine opening and closing
// the file itself so that every row is on disk when it returns.

namespace kw {

// One slice of a sweep (maxholddata over freqstart..freqstop) onto the row grid: new rows in a
// first pass, the rows of the first pass edited by position in a second one.
void sweepmerge();
// Marks the rows at or above the judging limit (less leveldist) with sample_dBmW 1, others 0.
void flagrows();
// The block of a Step test as the row of centerfreq.
void stepresultrow();
// The block of a marked row into the present row of the open recordset rs2.
void markedresultrow();

}  // namespace kw
