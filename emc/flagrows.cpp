#include "emc/merge.h"

#include "emc/emchooks.h"
#include "levels/segmentlimit.h"
#include "platform/onerror.h"
#include "shell/state.h"
#include "store/runfile.h"

namespace kw {

namespace {

struct LimitPoint {
    float f = 0.0f;
    float level = 0.0f;
};

}  // namespace

void flagrows()
{
    const bool average = st.limitbezug != 0;
    const QString freqColumn = average ? QStringLiteral("avefreq") : QStringLiteral("maxfreq");
    const QString levelColumn = average ? QStringLiteral("Average_dBmW") : QStringLiteral("Maxhold_dBmW");
    const bool isLog = (average ? st.lavelog : st.lmaxlog) != 0;
    holdrunfile();
    try {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from measurement order by frequency"));
        st.rs = st.measdb.OpenRecordset(QStringLiteral("select * from limitlines order by ") + freqColumn, dbOpenSnapshot);
        // Rows of the other, longer limit have this one's cells empty and may sort first.
        while (!st.rs.Eof() && st.rs.Field(freqColumn).isNull())
            st.rs.MoveNext();
        if (!st.rs.Eof()) {
            const auto point = [&] { return LimitPoint{float(st.rs.FieldNumber(freqColumn)), float(st.rs.FieldNumber(levelColumn))}; };
            LimitPoint low = point();
            st.rs.MoveNext();
            LimitPoint high = point();
            for (; !st.rs2.Eof(); st.rs2.MoveNext()) {
                const float f = float(st.rs2.FieldNumber(QStringLiteral("Frequency")));
                const float x = float(st.rs2.FieldNumber(QStringLiteral("Memory_dBmW"))) - st.leveldist;
                bool past = false;
                while (f > high.f) {
                    low = high;
                    st.rs.MoveNext();
                    if (st.rs.Eof()) {
                        past = true;
                        break;
                    }
                    high = point();
                }
                // Above the last limit point the limit ends: those rows keep what they had.
                if (past)
                    break;
                int mark = 0;
                if ((x >= low.level || x >= high.level) && f >= low.f)
                    mark = x >= segmentlimit(f, low.f, low.level, high.f, high.level, isLog) ? 1 : 0;
                // Only a changed mark is written: a second polarisation rewrites few rows.
                if (st.rs2.Field(QStringLiteral("sample_dBmW")).toDouble() != mark || st.rs2.Field(QStringLiteral("sample_dBmW")).isNull()) {
                    st.rs2.Edit();
                    st.rs2.SetField(QStringLiteral("sample_dBmW"), mark);
                    st.rs2.Update();
                    tellRowWritten("flag", f);
                }
            }
        }
    } catch (const VbError &) {
        // The rows judged so far keep their marks; the run goes on with them.
    }
    ResumeNext onError;
    onError([] { st.rs2.Close(); });
    onError([] { st.rs.Close(); });
    onError([] { st.measdb.Close(); });
}

}  // namespace kw
