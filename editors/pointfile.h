#pragma once
// Two-column text tables of points (frequency, level or loss/gain) for the editors' "Import..." and
// "Export...": comma, semicolon or tab between the columns, an optional header line, a decimal
// point or, where the separator is not a comma, a decimal comma; frequencies in MHz unless the
// header names Hz, kHz or GHz.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <utility>
#include <vector>

namespace kw {

struct PointTable {
    // MHz, value as written, in file order. A frequency may come twice in a row: a step.
    std::vector<std::pair<double, double>> points;
    QStringList errors;  // "line 7: ..." for every line that could not be read
};

PointTable readPointTable(const QByteArray &bytes);

// How an exported value comes back on import: the stored value a written number gives.
using StoredOf = std::function<float(double)>;

// The header and one line a point, comma-separated, MHz, decimal point. Each number is the
// shortest text that imports to the same stored value again.
QByteArray writePointTable(const QString &levelHeader, const std::vector<std::pair<float, float>> &stored,
                           const std::function<double(float)> &shownOf, const StoredOf &storedOf);

}  // namespace kw
