#include "levels/correctiontables.h"

#include "levels/correction.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <array>
#include <vector>

namespace kw {

namespace {

long long queries = 0;

// One slot's table as the chain reads it: the rows of its snapshot, taken when it is opened, in
// the snapshot's order. A snapshot is a copy made at opening, so finding in the copy is finding
// in the snapshot, compared as the engine compares a 32-bit float column (at that precision),
// without the engine's per-find parsing that would cost more than the rest of a trace. A slot whose
// recordset has been closed in the meantime (the shared rs, by another routine) answers nothing.
struct SlotTable : CorrTable {
    struct Row {
        float frequency;
        float level;
        bool hasFrequency;
        bool hasLevel;
    };
    int slot = 0;
    int32_t number = 0;  // the component the rows were read for
    std::vector<Row> rows;

    Recordset &recordset() const { return slot == 0 ? st.rs : st.slotrs[size_t(slot)]; }

    void load() { loadFrom(recordset()); }

    void loadFrom(Recordset &rs)
    {
        rows.clear();
        ResumeNext onError;
        onError([&] {
            if (rs.Bof() && rs.Eof())
                return;
            rs.MoveFirst();
            while (!rs.Eof()) {
                Row row{0.0f, 0.0f, false, false};
                const QVariant f = rs.Field(QStringLiteral("frequency"));
                const QVariant level = rs.Field(QStringLiteral("level_dbmw"));
                row.hasFrequency = !f.isNull();
                row.hasLevel = !level.isNull();
                row.frequency = float(f.toDouble());
                row.level = float(level.toDouble());
                rows.push_back(row);
                rs.MoveNext();
            }
            rs.MoveFirst();
        });
    }

    // The criteria correctionat writes: "frequency <op> <number>", op one of = < >.
    bool find(const QString &criterion, CorrRow &out, bool last)
    {
        ++queries;
        bool open = false;
        ResumeNext onError;
        onError([&] { open = recordset().isOpen(); });
        if (!open)
            return false;
        qsizetype at = 0;
        while (at < criterion.size() && criterion[at] != QLatin1Char('=') && criterion[at] != QLatin1Char('<') &&
               criterion[at] != QLatin1Char('>'))
            ++at;
        if (at == criterion.size())
            return false;
        const QChar op = criterion[at];
        const float value = float(vbVal(criterion.mid(at + 1)));
        auto matches = [&](const Row &r) {
            if (!r.hasFrequency)
                return false;
            return op == QLatin1Char('=') ? r.frequency == value
                   : op == QLatin1Char('<') ? r.frequency < value
                                            : r.frequency > value;
        };
        const Row *hit = nullptr;
        if (last) {
            for (auto it = rows.rbegin(); it != rows.rend() && !hit; ++it)
                if (matches(*it))
                    hit = &*it;
        } else {
            for (auto it = rows.begin(); it != rows.end() && !hit; ++it)
                if (matches(*it))
                    hit = &*it;
        }
        if (!hit)
            return false;
        out.frequency = hit->frequency;
        if (hit->hasLevel)  // an empty cell can't be assigned: the target keeps its value
            out.level = hit->level;
        return true;
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
        slotTables()[slot].number = number;
        slotTables()[slot].load();
        setcorrectiontable(int(slot), &slotTables()[slot]);
    }
}

void correctiontablesedited()
{
    resetcorrectionsegments();
    ResumeNext onError;
    for (SlotTable &table : slotTables()) {
        if (table.number < 1)
            continue;
        // A fresh copy of the component's rows, read beside the slot's recordset: the shared rs
        // may be in use by the read that is waiting for this event to end.
        Recordset fresh;
        onError([&] {
            fresh = st.db.OpenRecordset(QStringLiteral("select * from losdef where losnr = ") +
                                            QString::number(table.number) + QStringLiteral(" order by frequency"),
                                        dbOpenSnapshot);
        });
        if (fresh.isOpen())
            table.loadFrom(fresh);
        onError([&] { fresh.Close(); });
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
