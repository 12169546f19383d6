#pragma once
// The file of an EMC run held open by the program while the run writes it row by row.
//
// The routines of a run open and close st.measurefile for every row, so that each row is on disk
// when they return. Were that the only handle, every close would take the file off its
// write-ahead log again (a checkpoint and a change of journal, several syncs a row); held, the
// rows go to the log and the file becomes one file again when the run ends. The hold also gives
// the measurement table an index on its frequency, so that a step or a slice reads the rows of
// its frequencies only, however many rows the file holds.

namespace kw {

// Holds st.measurefile (right-trimmed) unless it is held already; a file that can't be opened is
// not held, and the routines then go on as they would without. Passes every failure over.
void holdrunfile();
// Closes the hold, and with it the log when no other handle of the program has the file open.
void releaserunfile();
// Copies the rows on the held file's log into the file: called while the run waits anyway, so
// that the rows' commits never wait for the disk's syncs.
void checkpointrunfile();
// Whether a file is held.
bool runfileheld();

}  // namespace kw
