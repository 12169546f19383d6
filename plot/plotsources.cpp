#include "plot/plotsources.h"

#include "platform/onerror.h"
#include "plot/measurementtable.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

namespace {

std::optional<float> cell(const Recordset &rs, const QString &name)
{
    const QVariant v = rs.Field(name);
    if (v.isNull())
        return std::nullopt;
    bool ok = false;
    const double d = v.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return asFloat(d);
}

// Every row of a limit, in the order of the query. A failing read leaves the rest out.
std::vector<LimitRow> readLimit(const Database &source, const QString &query, const QString &freqColumn,
                                const QString &levelColumn)
{
    std::vector<LimitRow> rows;
    ResumeNext onError;
    Recordset rs;
    onError([&] { rs = source.OpenRecordset(query, dbOpenSnapshot); });
    if (!rs.isOpen())
        return rows;
    try {
        if (rs.Eof() || rs.Bof())
            return rows;
        rs.MoveFirst();
        while (!rs.Eof()) {
            LimitRow row;
            onError([&] { row.frequency = cell(rs, freqColumn); });
            onError([&] { row.level = cell(rs, levelColumn); });
            rows.push_back(row);
            rs.MoveNext();
        }
    } catch (const VbError &) {
    }
    onError([&] { rs.Close(); });
    return rows;
}

std::vector<LimitRow> databaseLimitRows(bool maxHold)
{
    if (st.filemode) {
        ResumeNext onError;
        Database file;
        onError([&] { file = OpenDatabase(st.measurefile); });
        if (!file.isSet())
            return {};
        const QString order = maxHold ? QStringLiteral("maxfreq") : QStringLiteral("avefreq");
        auto rows = readLimit(file, QStringLiteral("select * from limitlines order by ") + order, order,
                              maxHold ? QStringLiteral("maxhold_dbmw") : QStringLiteral("average_dbmw"));
        onError([&] { file.Close(); });
        return rows;
    }
    const int32_t number = maxHold ? st.limitnrmax : st.limitnrave;
    return readLimit(st.db,
                     QStringLiteral("select * from limitdef where limitnr = ") + vbStr(double(number)) +
                         QStringLiteral(" order by frequency"),
                     QStringLiteral("frequency"), QStringLiteral("level_dbmw"));
}

std::unique_ptr<MeasurementRows> fileMeasurementRows()
{
    auto table = readMeasurementTable(st.measurefile);
    if (!table)
        return nullptr;
    return std::make_unique<TableRows>(std::move(table));
}

PlotSources defaults() { return PlotSources{&databaseLimitRows, &fileMeasurementRows}; }

}  // namespace

PlotSources &plotSources()
{
    static PlotSources sources = defaults();
    return sources;
}

void resetPlotSources() { plotSources() = defaults(); }

}  // namespace kw
