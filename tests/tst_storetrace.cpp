#include "levels/correction.h"
#include "link/storetrace.h"
#include "platform/clock.h"
#include "shell/state.h"

#include <QtTest>

using namespace kw;

namespace {
// A flat component: the same dB at every frequency of its range.
struct FlatTable : CorrTable {
    float db;
    QStringList asked;
    explicit FlatTable(float v) : db(v) {}
    bool findLast(const QString &criterion, CorrRow &row) override
    {
        asked << criterion;
        if (criterion.contains(QLatin1Char('=')))
            return false;
        row = {0.0f, db};
        return true;
    }
    bool findFirst(const QString &criterion, CorrRow &row) override
    {
        asked << criterion;
        row = {2000.0f, db};
        return true;
    }
};
}  // namespace

class TestStoreTrace : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        setNowSource([] { return 46000.5; });
        for (int slot = 0; slot < 5; ++slot)
            setcorrectiontable(slot, nullptr);
        st.freqstart = 0.0f;
        st.freqstop = 1000.0f;
        st.rawblock.fill(227);
    }
    void cleanup() { setNowSource({}); }

    void eachTraceGoesToItsArray()
    {
        for (int vm = 0; vm <= 4; ++vm) {
            init();
            st.vmtrace = uint8_t(vm);
            st.rawblock[2001] = 0;
            storetrace();
            for (int other = 0; other <= 4; ++other) {
                const TraceSlot slot = traceforvm(other);
                const bool mine = slot.trace == traceforvm(vm).trace;
                QCOMPARE(std::tuple(int((*slot.trace)[1]), int((*slot.trace)[2001]), *slot.date),
                         mine ? std::tuple(-50, -277, 46000.5) : std::tuple(0, 0, 0.0));
            }
            // The trailer is not touched.
            QCOMPARE(std::tuple(int(st.rawblock[2002]), int(st.grafikmin), int(st.grafikmax)), std::tuple(227, -287, -40));
        }
    }

    void chainAndDistanceAreApplied()
    {
        FlatTable cable(1.0f);
        setcorrectiontable(0, &cable);
        st.devicenr[0] = 4;
        st.correctionon = 1;
        st.configdist = 3.0f;
        st.lmaxdist = 10.0f;
        storetrace();
        // -50 + (1 - 10.4576) * 2.5 = -73.64
        QCOMPARE(std::tuple(int(st.sampledata[1]), int(st.sampledata[2001])), std::tuple(-74, -74));
        // Str drops the leading zero; one segment serves the whole trace.
        QCOMPARE(std::pair(cable.asked.first(), cable.asked.size()), std::pair(QStringLiteral("frequency = .4997501"), qsizetype(3)));

        // A-B: no chain, the distance all the same.
        st.vmtrace = 2;
        st.rawblock.fill(227);
        storetrace();
        QCOMPARE(int(st.memorydata[1]), -76);
    }

    void overflowEndsTheTraceInSilence()
    {
        st.reflevel = 20000.0f;
        st.sampledata.fill(7);
        storetrace();
        QCOMPARE(std::tuple(int(st.sampledata[1]), st.sampledate), std::tuple(7, 0.0));
    }
};

QTEST_MAIN(TestStoreTrace)
#include "tst_storetrace.moc"
