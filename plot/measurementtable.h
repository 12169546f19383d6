#pragma once
// The measurement table of a file, read in one go for the drawing passes. A pass opens the file
// anew each time, as the file is the record of the measurement; an unchanged file (same size and
// time of change) is not read twice, so the redraw of a large file costs the drawing only.

#include "plot/filescan.h"

#include <QString>
#include <array>
#include <memory>
#include <vector>

namespace kw {

struct MeasurementTable {
    using Row = std::array<std::optional<float>, kMeasColumns>;
    std::vector<Row> rows;  // ordered by frequency, empty frequencies first
};

// The table of the file at path; nullptr when the file or the table cannot be read.
std::shared_ptr<const MeasurementTable> readMeasurementTable(const QString &path);

// Rows of a table read beforehand, at its first row.
class TableRows : public MeasurementRows {
public:
    explicit TableRows(std::shared_ptr<const MeasurementTable> table) : table_(std::move(table)) {}
    bool eof() const override { return pos_ >= table_->rows.size(); }
    void moveNext() override
    {
        if (pos_ < table_->rows.size())
            ++pos_;
    }
    int32_t recordCount() const override { return int32_t(table_->rows.size()); }
    std::optional<double> value(int column) const override
    {
        if (eof() || column < 0 || column >= kMeasColumns)
            return std::nullopt;
        const auto &v = table_->rows[pos_][size_t(column)];
        return v ? std::optional<double>(*v) : std::nullopt;
    }

private:
    std::shared_ptr<const MeasurementTable> table_;
    size_t pos_ = 0;
};

}  // namespace kw
