#pragma once
// Measurement files: one SQLite file a measurement, ".mes" for a live trace, ".emc" for an EMC test.
// Both hold the same three tables (Measurement, Limitlines, Settings) with the same columns; the
// version in Settings (100 or 101) tells the two fillings apart. The path is st.measurefile.

#include "platform/recordset.h"

#include <cstdint>

namespace kw {

constexpr int16_t kMesVersion = 100;
constexpr int16_t kEmcVersion = 101;

// The three tables with their columns in the order they are created.
const TableDef &measurementTableDef();
const TableDef &limitlinesTableDef();
const TableDef &settingsTableDef();

// Builds the empty file at st.measurefile, deleting what stood there first. 0 when the file was
// made, 1 when it could not be (nothing tells the operator; the writers then leave it alone).
uint8_t CreateMeasurementFile();

// Fills a newly created file as ".mes" from the trace arrays, the chosen limits and the view.
void WriteMeasurementFile();

// Fills the limit lines and the settings row of a newly created ".emc" file from the test in
// work (st.testname, st.runmode, the detector flags, st.ambient, the band from st.freqstart, the
// chosen limits); the run adds the points.
void WriteEmcHeader();

// Loads st.measurefile: the view from its settings row, the mode's windows, the frequency range
// and point count from its points. Sets st.filemode, after which the plot draws from the file.
// Throws VbError where a step fails; the steps before it stay done.
void ReadMeasurementFile();

// Deletes a measurement file with its write-ahead log, passing failures over.
void deleteMeasurementFile(const QString &path);
// The last creation of this path (right-trimmed) failed: the writers leave the file alone.
bool creationFailed(const QString &path);

}  // namespace kw
