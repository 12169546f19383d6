// The correction chain over a real database file: configurations by name, the slot tables and
// what the segment cache saves.

#include "levels/correction.h"
#include "levels/correctiontables.h"
#include "levels/units.h"
#include "shell/state.h"
#include "support/chaindb.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace kw;

namespace {
float at(float f)
{
    correctionat(f);
    return st.correction;
}

// Straight from the rows, for comparison: linear between the enclosing rows, 0 outside.
float direct(const std::vector<std::pair<float, float>> &rows, float f)
{
    for (size_t k = rows.size(); k-- > 0;)
        if (rows[k].first == f)
            return rows[k].second;
    for (size_t k = 1; k < rows.size(); ++k)
        if (rows[k - 1].first < f && f < rows[k].first)
            return rows[k - 1].second +
                   (rows[k].second - rows[k - 1].second) * ((f - rows[k - 1].first) / (rows[k].first - rows[k - 1].first));
    return 0.0f;
}
}  // namespace

class TestCorrectionChain : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int files_ = 0;

    void bench(const std::vector<ChainComponent> &components)
    {
        makeChainDatabase(dir_.filePath(QStringLiteral("chain%1.mdb").arg(++files_)), QStringLiteral("My Bench"),
                          components);
    }

private slots:
    void init()
    {
        resetState();
        for (int slot = 0; slot < 5; ++slot)
            setcorrectiontable(slot, nullptr);
    }
    void cleanup()
    {
        if (st.db.isSet())
            st.db.Close();
    }

    void configurationByName()
    {
        bench({{11, 0, 3.0f, {{30, 18}, {1000, 24}}}, {12, 1, 0.0f, {{10, 0.5f}}}, {13, 2, 0.0f, {{0, -25}}}});
        QVERIFY(setupconfiguration(QStringLiteral("my BENCH  ")));
        QCOMPARE(st.configname, QStringLiteral("My Bench"));
        QCOMPARE(st.devicenr, (std::array<int32_t, 5>{11, 12, 13, 0, 0}));
        QCOMPARE(st.configdist, 3.0f);

        QVERIFY(!setupconfiguration(QStringLiteral("Other")));
        QCOMPARE(st.configname, QStringLiteral("Not set"));
        QCOMPARE(st.configdist, 0.0f);

        // Data on show from a stepped measurement keep the name and distance they came with.
        setupconfiguration(QStringLiteral("My Bench"));
        st.filemode = 1;
        QVERIFY(!setupconfiguration(QStringLiteral("Other")));
        QCOMPARE(st.configname, QStringLiteral("My Bench"));
        QCOMPARE(st.configdist, 3.0f);
    }

    void distanceOnlyFromAnAntennaInSlotA()
    {
        bench({{21, 1, 3.0f, {{30, 1}}}, {22, 0, 10.0f, {{30, 1}}}});
        setupconfiguration(QStringLiteral("My Bench"));
        QCOMPARE(st.configdist, 0.0f);  // a loss component in slot a has no distance
        QCOMPARE(configurationdistance(22), 10.0f);
        QCOMPARE(configurationdistance(99), 0.0f);
    }

    void fiveSlotsOnAnAscendingTrace()
    {
        std::vector<ChainComponent> parts;
        for (int k = 0; k < 5; ++k)
            parts.push_back({31 + k, k == 0 ? 0 : 1, 3.0f, evenRows(101, 0.0f, 1000.0f, float(k), 0.1f * float(k + 1))});
        bench(parts);
        setupconfiguration(QStringLiteral("My Bench"));
        st.correctionon = 1;
        opencorrectiontables();
        resetcorrectionsegments();
        const long long before = correctionqueries();
        for (int i = 1; i <= 2001; ++i) {
            const float f = float(1000.0 / 2001 * i);
            float expected = 0;
            for (const auto &p : parts)
                expected += direct(p.rows, f);
            QVERIFY2(qAbs(at(f) - expected) < 1e-3f, qPrintable(QString::number(double(f))));
        }
        // Rows every 10 MHz: each slot runs three finds for each of the 100 segments it enters and one
        // for the last point, which falls on its last row.
        QCOMPARE(correctionqueries() - before, 5 * (3 * 100 + 1));
    }

    void unitsByName()
    {
        bench({});
        st.db.AppendTable({QStringLiteral("unit"),
                           {{QStringLiteral("unitname"), FieldType::Text, 20}, {QStringLiteral("unitoffset"), FieldType::Single}}});
        st.db.Execute(QStringLiteral("insert into unit values ('dBmW', 0), ('dBuV', 107), ('dBuA', 73)"));
        QVERIFY(chooseunit(QStringLiteral("DBUV "), false, false));  // trimmed, case does not count
        QCOMPARE(st.unit, QStringLiteral("dBuV"));
        QCOMPARE(st.unitoffset, 107.0f);
        QVERIFY(chooseunit(QStringLiteral("dBuA"), true, true));
        QCOMPARE(st.unitoffset, 73.0f);
        // Picked in the combo box but not there: the pair stays.
        QVERIFY(!chooseunit(QStringLiteral("dBpW"), false, false));
        QCOMPARE(st.unit, QStringLiteral("dBuA"));
        // A quote breaks its own criterion; on a repaint the unit falls back.
        QVERIFY(!chooseunit(QStringLiteral("it's"), true, true));
        QCOMPARE(st.unit, QStringLiteral("dBmW"));
        QCOMPARE(st.unitoffset, 0.0f);
    }

    void aClosedTableLeavesItsShareOut()
    {
        bench({{41, 0, 3.0f, {{0, 10}, {1000, 10}}}, {42, 1, 0.0f, {{0, 2}, {1000, 2}}}});
        setupconfiguration(QStringLiteral("My Bench"));
        st.correctionon = 1;
        opencorrectiontables();
        resetcorrectionsegments();
        QCOMPARE(at(100), 12.0f);
        // The shared rs closed by someone else during a yield: slot a falls silent.
        st.rs.Close();
        resetcorrectionsegments();
        QCOMPARE(at(200), 2.0f);
        // No database at all: nothing opens, nothing is added, nothing is thrown.
        st.db.Close();
        st.rs = Recordset();
        st.slotrs[1] = Recordset();
        opencorrectiontables();
        resetcorrectionsegments();
        QCOMPARE(at(300), 0.0f);
    }
};

QTEST_MAIN(TestCorrectionChain)
#include "tst_correctionchain.moc"
