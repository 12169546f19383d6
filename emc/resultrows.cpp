#include "emc/blockeval.h"
#include "emc/emchooks.h"
#include "emc/merge.h"
#include "emc/rowgrid.h"
#include "platform/onerror.h"
#include "shell/state.h"
#include "store/runfile.h"

#include <array>

namespace kw {

namespace {

struct Detector {
    const char *all;         // the largest over the polarisations
    const char *horizontal;  // first pass, horizontal position
    const char *vertical;    // vertical position or second pass
    bool wanted;
    double value;
};

std::array<Detector, 3> detectors(const BlockResult &r)
{
    return {{{"Maxhold_dBmW", "h_Maxhold_dBmW", "v_Maxhold_dBmW", true, double(r.peak)},
             {"Average_dBmW", "h_Average_dBmW", "v_Average_dBmW", st.detaverage != 0, r.average},
             {"qpeak_dBmW", "h_qpeak_dBmW", "v_qpeak_dBmW", st.detqpeak != 0, r.qpeak}}};
}

// Into a row being edited or added: a first pass writes both columns; a second pass keeps the
// larger value in the common column and its own in the vertical one.
void writedetectors(ResumeNext &onError, const BlockResult &r, bool larger)
{
    for (const Detector &d : detectors(r)) {
        if (!d.wanted)
            continue;
        if (st.secondpass == 1) {
            if (!larger || onError.test([&] { return st.rs2.FieldNumber(QLatin1String(d.all)) < d.value; }))
                onError([&] { st.rs2.SetField(QLatin1String(d.all), d.value); });
            onError([&] { st.rs2.SetField(QLatin1String(d.vertical), d.value); });
        } else {
            onError([&] { st.rs2.SetField(QLatin1String(d.all), d.value); });
            onError([&] { st.rs2.SetField(QLatin1String(st.polarisationh ? d.horizontal : d.vertical), d.value); });
        }
    }
}

}  // namespace

void stepresultrow()
{
    const BlockResult r = evaluateblock(&tabledivisors);
    ResumeNext onError;
    const double f = gridfrequency(st.centerfreq);
    holdrunfile();
    onError([&] {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        // One step touches one row: only the rows about its frequency are read.
        st.rs2 = st.measdb.OpenRecordset(rowsfrom(f, f));
        bool found = false;
        if (st.secondpass == 1) {
            onError([&] {
                st.rs2.FindFirst(rowcriterion(st.centerfreq));
                found = !st.rs2.NoMatch();
            });
        }
        if (found) {
            st.rs2.Edit();
            writedetectors(onError, r, true);
        } else {
            st.rs2.AddNew();
            onError([&] { st.rs2.SetField(QStringLiteral("Frequency"), f); });
            writedetectors(onError, r, false);
        }
        st.rs2.Update();
        tellRowWritten("step", f);
    });
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
}

void markedresultrow()
{
    const BlockResult r = evaluateblock(&fixeddivisors);
    ResumeNext onError;
    onError([&] {
        st.rs2.Edit();
        writedetectors(onError, r, true);
        st.rs2.Update();
        tellRowWritten("marked", st.rs2.FieldNumber(QStringLiteral("Frequency")));
    });
}

}  // namespace kw
