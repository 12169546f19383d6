#pragma once
// The correction chain over the application database: the point tables of the five slots, and
// setting up a configuration by its name.

#include <QString>

namespace kw {

// Opens the point table of every slot that holds a component number, in frequency order, as a
// read-only snapshot; slot a into the shared rs. Errors are passed over: a table that does not
// open leaves its slot's share out.
void opencorrectiontables();

// After an editor changed component rows: every slot reads its component's rows anew and every
// cached segment is dropped, so no trace after the edit is corrected with the rows before it.
void correctiontablesedited();

// Finds run on the slot tables since the program started (the cache is meant to keep it low).
long long correctionqueries();

// Looks the configuration up by name ("configname like '...'") and takes its five component
// numbers and its distance. Without a match configname becomes "Not set" and configdist 0, unless
// the traces on show come from a stepped measurement (filemode), whose name and distance stay.
// Returns whether it was found.
bool setupconfiguration(const QString &name);

// configdist from the component in slot a: its distance when it is an antenna with a distance
// above 0, else 0.
float configurationdistance(int losnr);

}  // namespace kw
