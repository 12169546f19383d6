#include "emc/results.h"

#include "levels/levelmath.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/measurementfile.h"

#include <algorithm>
#include <cmath>

namespace kw {

namespace {

constexpr double kAmbientWindow = 6.0;  // dB: an ambient this close may be what was measured

std::optional<double> cell(const Recordset &rs, const char *column)
{
    try {
        const QVariant v = rs.Field(QLatin1String(column));
        bool ok = false;
        const double d = v.toDouble(&ok);
        if (v.isNull() || !ok || !std::isfinite(d))
            return std::nullopt;
        return d;
    } catch (const VbError &) {
        return std::nullopt;  // a file without that column
    }
}

QString textCell(const Recordset &rs, const char *column)
{
    try {
        return vbTrim(rs.Field(QLatin1String(column)).toString());
    } catch (const VbError &) {
        return QString();
    }
}

std::optional<double> level(const Recordset &rs, const char *column)
{
    const auto v = cell(rs, column);
    return hasLevel(v) ? v : std::nullopt;
}

QString quoted(const QString &text)
{
    QString q = text;
    q.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// A lookup in the application database; empty when it is not open or has no such row.
QString lookup(const QString &query, const char *column)
{
    try {
        Recordset rs = st.db.OpenRecordset(query, dbOpenSnapshot);
        const QString value = rs.Eof() ? QString() : textCell(rs, column);
        rs.Close();
        return value;
    } catch (const VbError &) {
        return QString();
    }
}

std::vector<LimitRow> fileLimit(const Database &file, bool maxHold)
{
    const char *freq = maxHold ? "maxfreq" : "avefreq";
    const char *lev = maxHold ? "maxhold_dbmw" : "average_dbmw";
    std::vector<LimitRow> rows;
    try {
        Recordset rs = file.OpenRecordset(QStringLiteral("select * from limitlines order by ") + QLatin1String(freq),
                                          dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext()) {
            const auto f = cell(rs, freq);
            const auto l = cell(rs, lev);
            if (f && l)
                rows.push_back({float(*f), float(*l)});
        }
        rs.Close();
    } catch (const VbError &) {
    }
    return rows;
}

std::optional<double> margin(std::optional<double> result, std::optional<double> limit)
{
    if (!result || !limit)
        return std::nullopt;
    return *result - *limit;
}

ResultLine lineOf(const Recordset &rs, const std::vector<LimitRow> &peakLimit, bool peakLog,
                  const std::vector<LimitRow> &averageLimit, bool averageLog, double offset)
{
    ResultLine line;
    line.frequency = *cell(rs, "Frequency");
    const auto shown = [offset](std::optional<double> v) { return v ? std::optional<double>(*v + offset) : v; };
    line.peak = shown(level(rs, "Maxhold_dBmW"));
    line.qpeak = shown(level(rs, "QPeak_dBmW"));
    line.average = shown(level(rs, "Average_dBmW"));

    const auto h = level(rs, "H_Maxhold_dBmW");
    const auto v = level(rs, "V_Maxhold_dBmW");
    if (h && (!v || *h >= *v))
        line.polarisation = QLatin1Char('H');
    else if (v)
        line.polarisation = QLatin1Char('V');

    line.peakLimit = shown(limitAt(peakLimit, line.frequency, peakLog));
    line.averageLimit = shown(limitAt(averageLimit, line.frequency, averageLog));
    line.marginFromQPeak = line.qpeak.has_value();
    line.peakMargin = margin(line.qpeak ? line.qpeak : line.peak, line.peakLimit);
    line.averageMargin = margin(line.average, line.averageLimit);
    if (const auto worst = line.worstMargin())
        line.verdict = *worst > 0 ? Verdict::Fail : Verdict::Pass;

    const auto ah = level(rs, "Ambient_H_dBmW");
    const auto av = level(rs, "Ambient_V_dBmW");
    if (ah || av)
        line.ambient = std::max(ah.value_or(kNoLevel), av.value_or(kNoLevel)) + offset;
    line.ambientNear = line.ambient && line.peak && *line.ambient >= *line.peak - kAmbientWindow;
    return line;
}

// Worst first; lines without a limit after all others, in frequency order.
bool worseFirst(const ResultLine &a, const ResultLine &b)
{
    const auto ma = a.worstMargin();
    const auto mb = b.worstMargin();
    if (ma.has_value() != mb.has_value())
        return ma.has_value();
    if (ma && *ma != *mb)
        return *ma > *mb;
    return a.frequency < b.frequency;
}

}  // namespace

std::optional<double> ResultLine::worstMargin() const
{
    if (peakMargin && averageMargin)
        return std::max(*peakMargin, *averageMargin);
    return peakMargin ? peakMargin : averageMargin;
}

Verdict ResultTable::overall() const
{
    bool judged = false;
    for (const ResultLine &line : lines) {
        if (line.verdict == Verdict::Fail)
            return Verdict::Fail;
        judged = judged || line.verdict == Verdict::Pass;
    }
    return judged ? Verdict::Pass : Verdict::NoLimit;
}

int ResultTable::failed() const
{
    return int(std::count_if(lines.begin(), lines.end(), [](const ResultLine &l) { return l.verdict == Verdict::Fail; }));
}

QString verdictText(Verdict v)
{
    switch (v) {
    case Verdict::Pass: return QStringLiteral("PASS");
    case Verdict::Fail: return QStringLiteral("FAIL");
    case Verdict::NoLimit: break;
    }
    return QStringLiteral("no limit");
}

std::optional<double> unitOffset(const QString &unitName)
{
    const QString text = lookup(QStringLiteral("select unitoffset from unit where unitname = ") + quoted(unitName), "unitoffset");
    bool ok = false;
    const double offset = text.toDouble(&ok);
    return ok ? std::optional<double>(offset) : std::nullopt;
}

std::optional<double> limitAt(const std::vector<LimitRow> &rows, double f, bool logarithmic)
{
    std::optional<double> lowest;
    const auto take = [&lowest](double l) { lowest = lowest ? std::min(*lowest, l) : l; };
    if (rows.size() == 1 && rows.front().frequency && rows.front().level && double(*rows.front().frequency) == f)
        take(*rows.front().level);
    for (size_t i = 1; i < rows.size(); ++i) {
        const LimitRow &a = rows[i - 1];
        const LimitRow &b = rows[i];
        if (!a.frequency || !a.level || !b.frequency || !b.level)
            continue;
        const double f0 = *a.frequency, f1 = *b.frequency, l0 = *a.level, l1 = *b.level;
        if (f < f0 || f > f1)
            continue;
        if (f1 == f0) {
            take(std::min(l0, l1));
            continue;
        }
        double t = (f - f0) / (f1 - f0);
        if (logarithmic && f0 > 0)
            t = (log10floor(f) - log10floor(f0)) / (log10floor(f1) - log10floor(f0));
        take(l0 + (l1 - l0) * t);
    }
    return lowest;
}

ResultTable readResults(const QString &path)
{
    ResultTable table;
    Database file;
    try {
        file = OpenDatabase(vbRTrim(path));
        Recordset settings = file.OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot);
        if (settings.Eof() || cell(settings, "vernr").value_or(0) != kEmcVersion) {
            table.error = QStringLiteral("Results are made from the file of an EMC test (.emc).");
            file.Close();
            return table;
        }
        table.test = textCell(settings, "configname");
        table.date = cell(settings, "dat").value_or(0);
        table.distance = int(cell(settings, "configdist").value_or(0));
        table.unit = textCell(settings, "unit");
        table.peakLimitLog = cell(settings, "lmaxlog").value_or(0) != 0;
        table.averageLimitLog = cell(settings, "lavelog").value_or(0) != 0;
        table.peakLimitName = textCell(settings, "maxholdname");
        table.averageLimitName = textCell(settings, "averagename");
        settings.Close();
    } catch (const VbError &) {
        table.error = QStringLiteral("The file ") + vbRTrim(path) + QStringLiteral(" could not be read.");
        ResumeNext()([&] { file.Close(); });
        return table;
    }
    table.configuration = lookup(QStringLiteral("select config from test where name = ") + quoted(table.test), "config");
    const std::optional<double> shown = unitOffset(table.unit);
    if (!shown)
        table.unit = QStringLiteral("dBmW");
    const double offset = shown.value_or(0.0);
    table.unitOffset = offset;

    const auto peakLimit = fileLimit(file, true);
    const auto averageLimit = fileLimit(file, false);
    // Rows of the sweep that were not stepped hold -1000 as their peak.
    try {
        Recordset rs = file.OpenRecordset(QStringLiteral("select * from measurement where maxhold_dbmw > -999.5 order by frequency"), dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext()) {
            if (!cell(rs, "Frequency") || !level(rs, "Maxhold_dBmW"))
                continue;
            table.lines.push_back(lineOf(rs, peakLimit, table.peakLimitLog, averageLimit, table.averageLimitLog, offset));
        }
        rs.Close();
    } catch (const VbError &) {
        table.error = QStringLiteral("The measurements of ") + vbRTrim(path) + QStringLiteral(" could not all be read.");
    }
    ResumeNext()([&] { file.Close(); });
    std::stable_sort(table.lines.begin(), table.lines.end(), &worseFirst);
    return table;
}

}  // namespace kw
