#include "store/measurementfile.h"

#include "platform/clock.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <functional>
#include <utility>
#include <vector>

namespace kw {

namespace {

// A trace point; indexes beyond the array fail as the classic bounds check does.
double tracePoint(const Trace &trace, int32_t i)
{
    if (i < 0 || i >= kTraceSize)
        throw VbError(9);
    return trace[size_t(i)] / 2.5;
}

QString limitQuery(int32_t limitnr)
{
    return QStringLiteral("select * from limitdef where limitnr = ") + vbCStr(int(limitnr)) + QStringLiteral(" order by frequency");
}

// A failed opening leaves the shared recordset unset, never on the rows of whatever it held
// before (the correction chain keeps a table in rs), so no foreign row can be copied in.
void openInto(Recordset &target, const Database &source, const QString &query)
{
    target = Recordset();
    target = source.OpenRecordset(query);
}

void writePoints(ResumeNext &on)
{
    on([] { openInto(st.rs2, st.measdb, QStringLiteral("select * from measurement")); });
    double step = 0;
    on([&] { step = vbDivide(double(st.freqstop) - double(st.freqstart), double(st.pointcount) - 1); });
    for (int32_t i = 1; i <= st.pointcount; ++i) {
        on([] { st.rs2.AddNew(); });
        on([&] { st.rs2.SetField(QStringLiteral("Frequency"), double(float(step * (i - 1) + double(st.freqstart)))); });
        on([&] { st.rs2.SetField(QStringLiteral("Sample_dBmW"), tracePoint(st.sampledata, i)); });
        on([&] { st.rs2.SetField(QStringLiteral("Average_dBmW"), tracePoint(st.averagedata, i)); });
        on([&] { st.rs2.SetField(QStringLiteral("Maxhold_dBmW"), tracePoint(st.maxholddata, i)); });
        on([&] { st.rs2.SetField(QStringLiteral("Memory_dBmW"), tracePoint(st.memorydata, i)); });
        on([] { st.rs2.SetField(QStringLiteral("QPeak_dBmW"), 0); });
        on([] { st.rs2.Update(); });
    }
}

// The two limits side by side: row k holds the k-th point of each. The average limit fills the
// rows first; the max hold limit then walks them from the top, editing where a row stands and
// adding where none does. The edit or addition opened after its last point is never updated, so
// no empty row follows the longer limit.
void copyLimitLines(ResumeNext &on)
{
    on([] { openInto(st.rs, st.db, limitQuery(st.limitnrave)); });
    on([] { openInto(st.rs2, st.measdb, QStringLiteral("select * from limitlines")); });
    if (on.test([] { return st.rs.RecordCount() > 0; })) {
        while (!on.test([] { return st.rs.Eof(); })) {
            on([] { st.rs2.AddNew(); });
            on([] { st.rs2.SetField(QStringLiteral("avefreq"), st.rs.Field(QStringLiteral("frequency"))); });
            on([] { st.rs2.SetField(QStringLiteral("average_dBmW"), st.rs.Field(QStringLiteral("level_dbmw"))); });
            on([] { st.rs2.Update(); });
            on([] { st.rs.MoveNext(); });
        }
    }

    on([] { openInto(st.rs, st.db, limitQuery(st.limitnrmax)); });
    if (on.test([] { return st.rs.RecordCount() > 0; })) {
        on([] { st.rs2.MoveFirst(); });
        if (on.test([] { return st.rs2.Eof(); }))
            on([] { st.rs2.AddNew(); });
        else
            on([] { st.rs2.Edit(); });
        while (!on.test([] { return st.rs.Eof(); })) {
            on([] { st.rs2.SetField(QStringLiteral("maxfreq"), st.rs.Field(QStringLiteral("frequency"))); });
            on([] { st.rs2.SetField(QStringLiteral("maxhold_dBmW"), st.rs.Field(QStringLiteral("level_dbmw"))); });
            on([] { st.rs2.Update(); });
            if (on.test([] { return st.rs2.Eof(); })) {
                on([] { st.rs2.AddNew(); });
            } else {
                on([] { st.rs2.MoveNext(); });
                if (on.test([] { return st.rs2.Eof(); }))
                    on([] { st.rs2.AddNew(); });
                else
                    on([] { st.rs2.Edit(); });
            }
            on([] { st.rs.MoveNext(); });
        }
    }
}

using Column = std::pair<const char *, std::function<QVariant()>>;

// The settings row, column by column in the writer's order: a value that fails leaves its cell
// empty and the others written.
void writeSettings(ResumeNext &on, const std::vector<Column> &columns)
{
    on([] { openInto(st.rs2, st.measdb, QStringLiteral("select * from settings")); });
    on([] { st.rs2.AddNew(); });
    for (const Column &column : columns)
        on([&column] { st.rs2.SetField(QLatin1String(column.first), column.second()); });
    on([] { st.rs2.Update(); });
}

QVariant v(double value) { return QVariant(value); }
// A name never set is written as an empty text, not as an empty cell, which the load could not
// take back.
QVariant v(const QString &value) { return QVariant(value.isNull() ? QStringLiteral("") : value); }

// The view flags and names both kinds of file take from the record alike.
QString paddedUnit() { return vbFixed(st.unit, 20); }

void closeAll(ResumeNext &on)
{
    on([] { st.rs2.Close(); });
    on([] { st.rs.Close(); });
    on([] { st.measdb.Close(); });
}

void openMeasurementFile()
{
    st.measdb = Database();
    st.measdb = OpenDatabase(vbRTrim(st.measurefile));
}

bool leftAlone() { return creationFailed(vbRTrim(st.measurefile)); }

}  // namespace

void WriteMeasurementFile()
{
    if (leftAlone())
        return;
    ResumeNext on;
    on(openMeasurementFile);
    // The file is new and no one else reads it before it is complete. A saved trace is all or
    // nothing: the points, limits and settings row go in one commit, so a save cut short leaves
    // the empty tables that load nothing, and the 2001 rows cost one sync instead of 2001.
    on([] { st.measdb.Execute(QStringLiteral("pragma locking_mode = exclusive")); });
    on([] { st.measdb.Execute(QStringLiteral("begin")); });
    writePoints(on);
    copyLimitLines(on);
    writeSettings(on, {
        {"vernr", [] { return v(kMesVersion); }},
        {"dat", [] { return v(nowDate()); }},
        {"centerfreq", [] { return v(st.centerfreq); }},
        {"reflevel", [] { return v(st.reflevel); }},
        {"attenuator", [] { return v(st.attenuator); }},
        {"bandwith", [] { return v(st.bandwith); }},
        {"videofilter", [] { return v(st.videofilter); }},
        {"span", [] { return v(st.span); }},
        {"unit", [] { return v(paddedUnit()); }},
        {"correctionon", [] { return v(st.correctionon); }},
        {"configname", [] { return v(st.configname); }},
        {"readmode", [] { return v(st.readmode); }},
        {"viewsample", [] { return v(st.viewsample); }},
        {"viewaverage", [] { return v(st.viewaverage); }},
        {"viewmaxhold", [] { return v(st.viewmaxhold); }},
        {"viewb", [] { return v(st.viewb); }},
        {"viewab", [] { return v(st.viewab); }},
        {"viewqpeak", [] { return v(0); }},
        {"viewlimitmax", [] { return v(st.viewlimitmax); }},
        {"viewlimitave", [] { return v(st.viewlimitave); }},
        {"averagename", [] { return v(st.averagename); }},
        {"maxholdname", [] { return v(st.maxholdname); }},
        {"tgon", [] { return v(st.tgon); }},
        {"tglevel", [] { return v(st.tglevel); }},
        {"mode", [] { return v(0); }},
        {"lmaxdist", [] { return v(st.lmaxdist); }},
        {"lavedist", [] { return v(st.lavedist); }},
        {"configdist", [] { return v(st.configdist); }},
        {"lmaxlog", [] { return v(st.lmaxlog); }},
        {"lavelog", [] { return v(st.lavelog); }},
        {"grafikmin", [] { return v(st.grafikmin); }},
        {"grafikmax", [] { return v(st.grafikmax); }},
        {"headline", [] { return v(st.headline); }},
        {"note", [] { return v(st.note); }},
    });
    on([] { st.measdb.Execute(QStringLiteral("commit")); });
    closeAll(on);
}

void WriteEmcHeader()
{
    if (leftAlone())
        return;
    ResumeNext on;
    on(openMeasurementFile);
    copyLimitLines(on);
    writeSettings(on, {
        {"vernr", [] { return v(kEmcVersion); }},
        {"dat", [] { return v(nowDate()); }},
        {"centerfreq", [] { return v(st.freqstart); }},  // the start of the band, read back as the centre
        {"reflevel", [] { return v(st.reflevel); }},
        {"attenuator", [] { return v(st.attenuator); }},
        {"bandwith", [] { return v(st.bandwith); }},
        {"videofilter", [] { return v(0); }},
        {"span", [] { return v(0); }},
        {"unit", [] { return v(paddedUnit()); }},
        {"correctionon", [] { return v(st.correctionon); }},
        {"configname", [] { return v(st.testname); }},  // the test, which the load takes back from here
        {"readmode", [] { return v(0); }},
        {"viewsample", [] { return v(0); }},
        {"viewaverage", [] { return v(st.detaverage); }},
        {"viewmaxhold", [] { return v(st.detmaxhold); }},
        {"viewb", [] { return v(st.viewb); }},
        {"viewab", [] { return v(0); }},
        {"viewqpeak", [] { return v(st.detqpeak); }},
        {"viewlimitmax", [] { return v(st.viewlimitmax); }},
        {"viewlimitave", [] { return v(st.viewlimitave); }},
        {"averagename", [] { return v(st.averagename); }},
        {"maxholdname", [] { return v(st.maxholdname); }},
        {"tgon", [] { return v(0); }},
        {"tglevel", [] { return v(0); }},
        {"mode", [] { return v(st.runmode == 1 ? 1 : 2); }},
        {"lmaxdist", [] { return v(st.lmaxdist); }},
        {"lavedist", [] { return v(st.lavedist); }},
        {"configdist", [] { return v(st.configdist); }},
        {"lmaxlog", [] { return v(st.lmaxlog); }},
        {"lavelog", [] { return v(st.lavelog); }},
        {"grafikmin", [] { return v(0); }},  // the end of the run writes the range
        {"grafikmax", [] { return v(0); }},
        {"note", [] { return v(st.note); }},
        {"headline", [] { return v(vbTrim(st.testname)); }},
        {"ambient", [] { return v(st.ambient); }},
    });
    closeAll(on);
}

}  // namespace kw
