#pragma once
// Where a drawing pass reads limits and file traces from. By default the application database and
// the measurement file; tests and benchmarks may hand in rows of their own.

#include "plot/filescan.h"
#include "plot/limitwalk.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace kw {

struct PlotSources {
    // The rows of the max hold limit (maxHold true) or the average limit, in frequency order:
    // limitdef of the chosen number, or in filemode the file's copy in limitlines. Empty when
    // there is no such table or no row.
    std::function<std::vector<LimitRow>(bool maxHold)> limitRows;
    // The measurement table of measurefile; nullptr when it cannot be opened.
    std::function<std::unique_ptr<MeasurementRows>()> measurementRows;
};

PlotSources &plotSources();
// Back to the database and the file.
void resetPlotSources();

// Rows held in memory, for a table read beforehand or made up.
class VectorRows : public MeasurementRows {
public:
    using Row = std::array<std::optional<float>, kMeasColumns>;
    explicit VectorRows(std::vector<Row> rows) : rows_(std::move(rows)) {}
    bool eof() const override { return pos_ >= rows_.size(); }
    void moveNext() override { if (pos_ < rows_.size()) ++pos_; }
    int32_t recordCount() const override { return int32_t(rows_.size()); }
    std::optional<double> value(int column) const override
    {
        if (eof() || column < 0 || column >= kMeasColumns || !rows_[pos_][size_t(column)])
            return std::nullopt;
        return double(*rows_[pos_][size_t(column)]);
    }

private:
    std::vector<Row> rows_;
    size_t pos_ = 0;
};

}  // namespace kw
