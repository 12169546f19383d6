#pragma once
// The traces of a measurement file: read row by row from its measurement table, in frequency
// order, as lines (live and stepped results), stems (Sweep + Step results) or a zero span trace.

#include <cstdint>
#include <optional>

namespace kw {

// Columns the scans read.
enum MeasColumn : int { kFrequency, kSample, kAverage, kMaxhold, kMemory, kQPeak, kAmbientH, kAmbientV, kMeasColumns };

// The rows of "select * from measurement order by frequency", at the first row when handed over.
class MeasurementRows {
public:
    virtual ~MeasurementRows() = default;
    virtual bool eof() const = 0;
    virtual void moveNext() = 0;
    // The engine's count at the moment of asking.
    virtual int32_t recordCount() const = 0;
    // The value of a column in the current row; nothing at EOF or in an empty cell.
    virtual std::optional<double> value(int column) const = 0;
};

// A column value as a 32-bit float, as the columns hold it; nothing for a value a float can't hold.
std::optional<float> asFloat(double value);

// A point as the scans hold it: levels in plot units.
struct MeasPoint {
    float frequency = 0.0f;
    int16_t level[kMeasColumns] = {};
};

// Reads the current row into point: a column that cannot be read or converted keeps its value.
void readPoint(const MeasurementRows &rows, MeasPoint &point);
// The next point: one row, or with thinning one row and up to step more, keeping each level's
// maximum and the last frequency.
void readNextPoint(MeasurementRows &rows, MeasPoint &point, bool thin, int step);

// The scan that mode and span ask for; the line and the stem scan set st.economicstep.
void scanFile(MeasurementRows &rows);

}  // namespace kw
