#include "link/storetrace.h"

#include "levels/correction.h"
#include "levels/distance.h"
#include "levels/levelcount.h"
#include "levels/rangetrack.h"
#include "platform/clock.h"
#include "platform/screen.h"
#include "platform/vbformat.h"

#include <algorithm>

namespace kw {

TraceSlot traceforvm(int vmtrace)
{
    switch (vmtrace) {
    case 0: return {&st.sampledata, &st.sampledate};
    case 1:
    case 2: return {&st.memorydata, &st.memorydate};  // Memory B and A-B share the memory trace
    case 3: return {&st.averagedata, &st.averagedate};
    case 4: return {&st.maxholddata, &st.maxholddate};
    default: return {nullptr, nullptr};
    }
}

void storetrace()
{
    RangeTrack range = beginrange();
    resetcorrectionsegments();
    doEvents();
    // A click during the yield may have changed the record; what stands now is used.
    const float d = distancecorrection();
    const int points = std::clamp(int(st.pointcount), 0, kTraceSize - 1);
    const TraceSlot target = traceforvm(st.vmtrace);
    try {
        for (int i = 1; i <= points; ++i) {
            int16_t level = rawtocount(st.rawblock[size_t(i)], st.dbperdiv, st.attenuator, st.reflevel);
            st.rawblock[size_t(i)] = level;
            float f = tracepointfreq(st.freqstart, st.freqstop, st.pointcount, i);
            correctionat(f);
            const float c = st.correction - d;
            level = addcorrection(level, c);
            st.rawblock[size_t(i)] = level;
            range.see(level);
            if (target.trace)
                (*target.trace)[size_t(i)] = level;
        }
        if (target.date)
            *target.date = nowDate();
        finishrange(range);
    } catch (const VbError &) {
        // An overflow of the 16-bit level ends the routine where it stands, in silence; the points
        // converted so far stay.
    }
}

}  // namespace kw
