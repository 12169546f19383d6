#include "levels/correctiontables.h"

#include "levels/correction.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <array>

namespace kw {

namespace {

long long queries = 0;

// One slot's table as the chain reads it. Every database error is passed over: a find that fails
// counts as no match, a field that can't be read leaves the value the caller put in.
struct SlotTable : CorrTable {
    int slot = 0;
    Recordset &recordset() const { return slot == 0 ? st.rs : st.slotrs[size_t(slot)]; }

    bool find(const QString &criterion, CorrRow &row, bool last)
    {
        ++queries;
        Recordset &rs = recordset();
        ResumeNext onError;
        bool found = false;
        onError([&] {
            if (last)
                rs.FindLast(criterion);
            else
                rs.FindFirst(criterion);
            found = !rs.NoMatch();
        });
        if (onError.number != 0)
            return false;
        if (found) {
            onError([&] { row.frequency = float(rs.FieldNumber(QStringLiteral("frequency"))); });
            onError([&] { row.level = float(rs.FieldNumber(QStringLiteral("level_dbmw"))); });
        }
        return found;
    }
    bool findLast(const QString &criterion, CorrRow &row) override { return find(criterion, row, true); }
    bool findFirst(const QString &criterion, CorrRow &row) override { return find(criterion, row, false); }
};

std::array<SlotTable, 5> &slotTables()
{
    static std::array<SlotTable, 5> tables = [] {
        std::array<SlotTable, 5> t;
        for (int i = 0; i < 5; ++i)
            t[size_t(i)].slot = i;
        return t;
    }();
    return tables;
}

}  // namespace

long long correctionqueries() { return queries; }

void opencorrectiontables()
{
    ResumeNext onError;
    for (size_t slot = 0; slot < 5; ++slot) {
        const int32_t number = st.devicenr[slot];
        if (number < 1)
            continue;  // an empty slot is never read; its old recordset stays as it was
        const QString sql = QStringLiteral("select * from losdef where losnr = ") + QString::number(number) +
                            QStringLiteral(" order by frequency");
        Recordset &target = slot == 0 ? st.rs : st.slotrs[slot];
        onError([&] { target = st.db.OpenRecordset(sql, dbOpenSnapshot); });
        setcorrectiontable(int(slot), &slotTables()[slot]);
    }
}

float configurationdistance(int losnr)
{
    ResumeNext onError;
    float distance = 0.0f;
    onError([&] {
        Recordset head = st.db.OpenRecordset(QStringLiteral("loshead"), dbOpenSnapshot);
        head.FindFirst(QStringLiteral("losnr = ") + QString::number(losnr));
        if (head.NoMatch())
            return;
        const double d = head.FieldNumber(QStringLiteral("distance"));
        if (d > 0 && head.FieldNumber(QStringLiteral("lostyp")) == 0)
            distance = float(d);
        head.Close();
    });
    return distance;
}

bool setupconfiguration(const QString &name)
{
    ResumeNext onError;
    bool found = false;
    std::array<int32_t, 5> numbers = st.devicenr;
    onError([&] {
        Recordset config = st.db.OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        config.FindFirst(QStringLiteral("configname like '") + vbTrim(name) + QStringLiteral("'"));
        if (config.NoMatch())
            return;
        found = true;
        st.configname = config.FieldText(QStringLiteral("configname"));
        static const char *const columns[] = {"devicea", "deviceb", "devicec", "deviced", "devicee"};
        for (size_t slot = 0; slot < 5; ++slot) {
            ResumeNext field;
            field([&] { numbers[slot] = int32_t(config.FieldNumber(QLatin1String(columns[slot]))); });
        }
        config.Close();
    });
    if (found) {
        st.devicenr = numbers;
        st.configdist = configurationdistance(st.devicenr[0]);
    } else if (st.filemode == 0) {
        st.configname = QStringLiteral("Not set");
        st.configdist = 0.0f;
    }
    if (uiHooks().configurationChanged)
        uiHooks().configurationChanged();
    return found;
}

}  // namespace kw
