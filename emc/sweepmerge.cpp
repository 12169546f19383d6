#include "emc/merge.h"

#include "emc/emchooks.h"
#include "emc/rowgrid.h"
#include "platform/onerror.h"
#include "shell/state.h"
#include "store/runfile.h"

namespace kw {

namespace {

const char *const kOtherLevels[] = {"Memory_dBmW", "sample_dBmW", "Maxhold_dBmW", "Average_dBmW",
                                    "qpeak_dBmW", "ambient_h_dBmW", "ambient_v_dBmW"};

// The column a pass of this phase writes its sweep level into.
QString sweepcolumn(uint8_t phase)
{
    switch (phase) {
    case 1: return QStringLiteral("ambient_h_dBmW");
    case 2: return QStringLiteral("ambient_v_dBmW");
    default: return QStringLiteral("Memory_dBmW");
    }
}

void newrow(ResumeNext &onError, double frequency, double v)
{
    const QString column = sweepcolumn(st.ambientphase);
    onError([&] {
        st.rs2.AddNew();
        onError([&] { st.rs2.SetField(QStringLiteral("Frequency"), frequency); });
        for (const char *other : kOtherLevels)
            if (column.compare(QLatin1String(other), Qt::CaseInsensitive) != 0)
                onError([&] { st.rs2.SetField(QLatin1String(other), -1000); });
        onError([&] { st.rs2.SetField(column, v); });
        st.rs2.Update();
        tellRowWritten("new", frequency);
    });
}

// The next row of the first pass's grid takes the level: the grid repeats exactly, so the row
// advances by position and is not searched.
void editrow(ResumeNext &onError, double v)
{
    const QString column = sweepcolumn(st.ambientphase);
    onError([&] {
        st.rs2.Edit();
        if (st.ambientphase == 0) {
            if (onError.test([&] { return st.rs2.FieldNumber(column) < v; }))
                onError([&] { st.rs2.SetField(column, v); });
        } else {
            onError([&] { st.rs2.SetField(column, v); });
        }
        st.rs2.Update();
        tellRowWritten("sweep", st.rs2.FieldNumber(QStringLiteral("Frequency")));
    });
    onError([] { st.rs2.MoveNext(); });
}

}  // namespace

void sweepmerge()
{
    ResumeNext onError;
    const float step = float(st.freqstop - st.freqstart) / float(st.pointcount - 1);
    bool writing = true;
    holdrunfile();
    onError([&] {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        if (st.secondpass == 1) {
            st.rs2 = st.measdb.OpenRecordset(rowsfrom(gridfrequency(st.nextrowfreq), double(st.freqstop) + 1.0));
            st.rs2.FindFirst(rowcriterion(st.nextrowfreq));
            writing = !st.rs2.NoMatch();
        } else {
            // New rows only: no row needs reading.
            st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from measurement where 0 = 1"));
        }
    });
    if (!st.rs2.isOpen())
        writing = false;
    // Rounding to the grid goes through text; the loop keeps what it has rounded.
    const double doneupto = gridfrequency(st.doneupto);
    double nextrow = gridfrequency(st.nextrowfreq);
    for (int i = 1; writing && i <= st.pointcount && i < kTraceSize; ++i) {
        const float f = step * float(i - 1) + st.freqstart;
        const double grid = gridfrequency(f);
        if (!(doneupto <= grid && nextrow <= grid))
            continue;
        const double v = st.maxholddata[size_t(i)] / 2.5;
        if (st.secondpass == 0)
            newrow(onError, grid, v);
        else
            editrow(onError, v);
        if (step * float(i - 1) + st.freqstart > st.runstop)
            break;
        const double half = st.stepsize <= 0.01 ? st.stepsize : st.stepsize / 2;
        st.nextrowfreq = float(gridfrequency(double(st.freqstart) + half + (i - 1) * double(step)));
        // The first limit frequency gets a row of its own, once, so the limit's first point is judged.
        if (st.nextrowfreq >= st.limitmark && st.freqstart < st.limitmark) {
            st.nextrowfreq = st.limitmark;
            st.limitmark = 100000.0f;
        }
        nextrow = gridfrequency(st.nextrowfreq);
    }
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
}

}  // namespace kw
