#include "levels/correction.h"
#include "shell/state.h"

#include <QtTest>
#include <vector>

using namespace kw;

namespace {
// A slot table in memory that answers the three criteria forms and counts what it is asked.
struct MemoryTable : CorrTable {
    std::vector<CorrRow> rows;  // in frequency order
    int queries = 0;
    QStringList asked;
    explicit MemoryTable(std::vector<CorrRow> r) : rows(std::move(r)) {}

    bool match(const QString &criterion, const CorrRow &row) const
    {
        const QStringList parts = criterion.simplified().split(QLatin1Char(' '));
        const float v = parts.value(2).toFloat();
        const QString op = parts.value(1);
        return op == "=" ? row.frequency == v : op == "<" ? row.frequency < v : row.frequency > v;
    }
    bool findLast(const QString &criterion, CorrRow &row) override
    {
        ++queries;
        asked << criterion;
        for (auto it = rows.rbegin(); it != rows.rend(); ++it)
            if (match(criterion, *it)) {
                row = *it;
                return true;
            }
        return false;
    }
    bool findFirst(const QString &criterion, CorrRow &row) override
    {
        ++queries;
        asked << criterion;
        for (const auto &r : rows)
            if (match(criterion, r)) {
                row = r;
                return true;
            }
        return false;
    }
};

float at(float f)
{
    correctionat(f);
    return st.correction;
}
}  // namespace

class TestCorrection : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        st.correctionon = 1;
        for (int slot = 0; slot < 5; ++slot)
            setcorrectiontable(slot, nullptr);
        resetcorrectionsegments();
    }

    void nothingToCorrect()
    {
        MemoryTable t({{100, 5}, {200, 7}});
        setcorrectiontable(0, &t);
        QCOMPARE(at(150), 0.0f);  // no slot holds a number
        st.devicenr[0] = 12;
        st.vmtrace = 2;
        QCOMPARE(at(150), 0.0f);  // A-B
        st.vmtrace = 0;
        st.correctionon = 0;
        QCOMPARE(at(150), 0.0f);
        st.correctionon = 1;
        QCOMPARE(at(-0.001f), 0.0f);  // below 0 is not looked up
        QCOMPARE(t.queries, 0);
        QCOMPARE(at(150), 6.0f);
        QCOMPARE(t.asked.first(), QStringLiteral("frequency = 150"));
    }

    void tableEdges_data()
    {
        QTest::addColumn<float>("f");
        QTest::addColumn<float>("db");
        QTest::newRow("below the first row") << 10.0f << 0.0f;
        QTest::newRow("on the first row") << 30.0f << 14.5f;
        QTest::newRow("between rows") << 35.0f << 12.5f;
        QTest::newRow("on an inner row") << 40.0f << 11.0f;
        QTest::newRow("on the last row") << 300.0f << 19.5f;
        QTest::newRow("above the last row") << 301.0f << 0.0f;
        QTest::newRow("0 MHz is looked up") << 0.0f << 0.0f;
    }
    void tableEdges()
    {
        QFETCH(float, f);
        QFETCH(float, db);
        MemoryTable antenna({{30, 14.5f}, {35, 12.5f}, {40, 11.0f}, {300, 19.5f}});
        MemoryTable cable({{0, 1.0f}, {1000, 1.0f}});
        setcorrectiontable(0, &antenna);
        setcorrectiontable(2, &cable);
        st.devicenr = {5, 0, 7, 0, 0};
        QCOMPARE(at(f), db + 1.0f);  // the cable counts whatever the antenna gives
    }

    void singleRowTable()
    {
        MemoryTable t({{100, 3}});
        setcorrectiontable(4, &t);
        st.devicenr[4] = 9;
        QCOMPARE(at(99.9f), 0.0f);
        QCOMPARE(at(100), 3.0f);
        QCOMPARE(at(100.1f), 0.0f);
    }

    void stepOfTwoRowsAtOneFrequency()
    {
        MemoryTable t({{50, 10}, {100, 10}, {100, 20}, {150, 20}});
        setcorrectiontable(1, &t);
        st.devicenr[1] = 3;
        QCOMPARE(at(99.9f), 10.0f);
        QCOMPARE(at(100), 20.0f);
        QCOMPARE(at(100.1f), 20.0f);
        // Slot b writes its equality with two blanks.
        QVERIFY(t.asked.contains(QStringLiteral("frequency  = 100")));
    }

    void ascendingTraceQueriesOnlyOnRowCrossings()
    {
        std::vector<CorrRow> rows;
        for (int k = 0; k <= 10; ++k)
            rows.push_back({float(k * 100), float(k)});
        MemoryTable t(rows);
        setcorrectiontable(0, &t);
        st.devicenr[0] = 1;
        for (int i = 1; i <= 2001; ++i) {
            const float f = float(1000.0 / 2001 * i);
            const float c = at(f);
            QVERIFY(qAbs(c - f / 100) < 1e-4f);
        }
        // Three finds for each of the ten segments entered, one for the last point on 1000 MHz.
        QCOMPARE(t.queries, 31);

        // Without the reset a second pass from the bottom extrapolates along the last segment.
        const int before = t.queries;
        QCOMPARE(at(850.0f), 8.5f);
        QCOMPARE(t.queries, before);
        resetcorrectionsegments();
        at(850.0f);
        QCOMPARE(t.queries, before + 3);
    }

    void backwardCallExtrapolates()
    {
        MemoryTable t({{100, 0}, {200, 10}});
        setcorrectiontable(0, &t);
        st.devicenr[0] = 1;
        QCOMPARE(at(150), 5.0f);
        const int queries = t.queries;
        QCOMPARE(at(50), -5.0f);
        QCOMPARE(t.queries, queries);
    }

    void chainOfFiveSlots()
    {
        MemoryTable a({{30, 18}, {1000, 24}});
        MemoryTable b({{10, 0.46f}, {1000, 7.05f}});
        MemoryTable c({{0, 6}, {1000, 6}});
        MemoryTable d({{0, -26}, {1000, -24.5f}});
        MemoryTable e({{0, 0.5f}, {2000, 0.5f}});
        MemoryTable *all[] = {&a, &b, &c, &d, &e};
        for (int slot = 0; slot < 5; ++slot)
            setcorrectiontable(slot, all[slot]);
        st.devicenr = {1, 2, 3, 4, 5};
        const float f = 505.0f;
        const float expected = (18 + 6 * (505 - 30) / 970.0f) + (0.46f + 6.59f * (495 / 990.0f)) + 6 +
                               (-26 + 1.5f * 505 / 1000) + 0.5f;
        QVERIFY(qAbs(at(f) - expected) < 1e-4f);
        // An empty slot is left out even when a table is there; a missing table leaves its share out.
        st.devicenr[2] = 0;
        setcorrectiontable(3, nullptr);
        resetcorrectionsegments();
        QVERIFY(qAbs(at(f) - (expected - 6 - (-26 + 1.5f * 505 / 1000))) < 1e-4f);
    }
};

QTEST_MAIN(TestCorrection)
#include "tst_correction.moc"
