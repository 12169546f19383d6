// The correction chain over a database file: configurations by name, the slot tables, the
// segment cache and what it saves.

#include "levels/correction.h"
#include "levels/correctiontables.h"
#include "levels/units.h"
#include "shell/state.h"
#include "support/chaindb.h"

#include <QTemporaryDir>
#include <bit>
#include <QtTest>

using namespace kw;

namespace {
float at(float f)
{
    correctionat(f);
    return st.correction;
}
}  // namespace

class TestCorrectionChain : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int files_ = 0;

    // A configuration of the given components, correction on, tables open, segments reset.
    void chain(const std::vector<ChainComponent> &components)
    {
        makeChainDatabase(dir_.filePath(QStringLiteral("chain%1.mdb").arg(++files_)), QStringLiteral("My Bench"),
                          components);
        setupconfiguration(QStringLiteral("My Bench"));
        st.correctionon = 1;
        opencorrectiontables();
        resetcorrectionsegments();
    }

private slots:
    void init() { resetState(); }
    void cleanup()
    {
        if (st.db.isSet())
            st.db.Close();
    }

    void configurationByName()
    {
        chain({{11, 0, 3.0f, {{30, 18}}}, {12, 1, 0.0f, {{10, 0.5f}}}, {13, 2, 0.0f, {{0, -25}}}});
        QVERIFY(setupconfiguration(QStringLiteral("my BENCH  ")));
        QCOMPARE(std::tuple(st.configname, st.configdist, st.devicenr), std::tuple(QStringLiteral("My Bench"), 3.0f, std::array<int32_t, 5>{11, 12, 13, 0, 0}));
        QVERIFY(!setupconfiguration(QStringLiteral("Other")));
        QCOMPARE(std::tuple(st.configname, st.configdist), std::tuple(QStringLiteral("Not set"), 0.0f));
        // Data on show from a stepped measurement keep the name and distance they came with.
        setupconfiguration(QStringLiteral("My Bench"));
        st.filemode = 1;
        QVERIFY(!setupconfiguration(QStringLiteral("Other")));
        QCOMPARE(std::tuple(st.configname, st.configdist), std::tuple(QStringLiteral("My Bench"), 3.0f));
        // Only an antenna gives a distance.
        QCOMPARE(configurationdistance(12), 0.0f);
    }

    void nothingToCorrect()
    {
        chain({{1, 1, 0.0f, {{100, 5}, {200, 7}}}});
        const long long before = correctionqueries();
        st.vmtrace = 2;
        const float ab = at(150);  // A-B carries the chain in both terms
        st.vmtrace = 0;
        const float negative = at(-0.001f);
        st.correctionon = 0;
        const float off = at(150);
        st.correctionon = 1;
        st.devicenr[0] = 0;
        QCOMPARE((std::array{ab, negative, off, at(150)}), (std::array{0.0f, 0.0f, 0.0f, 0.0f}));
        QCOMPARE(correctionqueries(), before);
    }

    void tableEdges_data()
    {
        QTest::addColumn<float>("f");
        QTest::addColumn<float>("db");
        QTest::newRow("0 MHz is looked up") << 0.0f << 0.0f;
        QTest::newRow("on the first row") << 30.0f << 14.5f;
        QTest::newRow("between rows") << 32.5f << 13.5f;
        QTest::newRow("above the last row") << 301.0f << 0.0f;
        QTest::newRow("step: below") << 99.9f << 11.0f;
        QTest::newRow("step: on it, the later row") << 100.0f << 20.0f;
    }
    void tableEdges()
    {
        QFETCH(float, f);
        QFETCH(float, db);
        // The cable in slot b counts whatever the antenna gives.
        chain({{5, 0, 3.0f, {{30, 14.5f}, {35, 12.5f}, {40, 11.0f}, {100, 11.0f}, {100, 20.0f}, {300, 19.5f}}},
               {7, 1, 0.0f, {{0, 1.0f}, {1000, 1.0f}}}});
        QVERIFY(qAbs(at(f) - (db + 1.0f)) < 1e-3f);
    }

    void singleRowAndBackwardCalls()
    {
        chain({{9, 1, 0.0f, {{100, 3}}}, {8, 1, 0.0f, {{100, 0}, {200, 10}}}});
        // At 150 only the second table has a segment.
        QCOMPARE((std::array{at(99.9f), at(100), at(150)}), (std::array{0.0f, 3.0f, 5.0f}));
        // Backward without the reset: extrapolation along the cached segment, no new search.
        const long long before = correctionqueries();
        QCOMPARE(at(50), -5.0f);
        QVERIFY(correctionqueries() - before <= 3);  // the single-row table searches; the other does not
        // The running total takes the low level before the slope, each sum a single: bit for bit.
        chain({{9, 1, 0.0f, {{150, 0.1f}}}, {8, 1, 0.0f, {{100, 0.1f}, {200, 0.4f}}}});
        const float total = at(150);
        const float expected = (0.1f + 0.1f) + (0.4f - 0.1f) * 0.5f;
        QCOMPARE(std::bit_cast<uint32_t>(total), std::bit_cast<uint32_t>(expected));
    }

    void fiveSlotsQueryOnlyOnRowCrossings()
    {
        std::vector<ChainComponent> parts;
        for (int k = 0; k < 5; ++k)
            parts.push_back({31 + k, k == 0 ? 0 : 1, 3.0f, evenRows(101, 0.0f, 1000.0f, float(k), 0.1f * float(k + 1))});
        chain(parts);
        const long long before = correctionqueries();
        for (int i = 1; i <= 2001; ++i) {
            const float f = float(1000.0 / 2001 * i);
            // Slot k rises from k dB at 0 MHz by 0.1 (k + 1) dB every 10 MHz: 10 dB and 0.15 dB a MHz in all.
            QVERIFY2(qAbs(at(f) - (10.0f + 0.15f * f)) < 2e-3f, qPrintable(QString::number(double(f))));
        }
        // Rows every 10 MHz: three finds for each of the 100 segments a slot enters, and one for the
        // last point, which falls on the last row.
        QCOMPARE(correctionqueries() - before, 5 * (3 * 100 + 1));
        // Without the reset a second pass would extrapolate; with it the search starts again.
        resetcorrectionsegments();
        at(0.5f);
        QCOMPARE(correctionqueries() - before, 5 * (3 * 100 + 1) + 5 * 3);
    }

    void aClosedTableLeavesItsShareOut()
    {
        chain({{41, 0, 3.0f, {{0, 10}, {1000, 10}}}, {42, 1, 0.0f, {{0, 2}, {1000, 2}}}});
        QCOMPARE(at(100), 12.0f);
        // The shared rs closed by someone else during a yield: slot a falls silent.
        st.rs.Close();
        resetcorrectionsegments();
        QCOMPARE(at(200), 2.0f);
        // No database at all: nothing opens, nothing is added, nothing is thrown.
        st.db.Close();
        opencorrectiontables();
        resetcorrectionsegments();
        QCOMPARE(at(300), 0.0f);
    }

    void unitsByName()
    {
        chain({});
        st.db.AppendTable({QStringLiteral("unit"),
                           {{QStringLiteral("unitname"), FieldType::Text, 20}, {QStringLiteral("unitoffset"), FieldType::Single}}});
        st.db.Execute(QStringLiteral("insert into unit values ('dBmW', 0), ('dBuV', 107), ('dBuA', 73)"));
        QVERIFY(chooseunit(QStringLiteral("DBUV "), false, false));  // trimmed, case does not count
        QCOMPARE(std::tuple(st.unit, st.unitoffset), std::tuple(QStringLiteral("dBuV"), 107.0f));
        QVERIFY(!chooseunit(QStringLiteral("dBpW"), false, false) && st.unit == QStringLiteral("dBuV"));  // not there: the pair stays
        // A quote breaks its own criterion; on a repaint the unit falls back.
        QVERIFY(!chooseunit(QStringLiteral("it's"), true, true));
        QCOMPARE(std::tuple(st.unit, st.unitoffset), std::tuple(QStringLiteral("dBmW"), 0.0f));
    }
};

QTEST_MAIN(TestCorrectionChain)
#include "tst_correctionchain.moc"
