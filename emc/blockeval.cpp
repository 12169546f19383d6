#include "emc/blockeval.h"

#include "levels/correction.h"
#include "levels/distance.h"
#include "levels/levelcount.h"
#include "levels/levelmath.h"
#include "levels/rangetrack.h"
#include "platform/onerror.h"
#include "shell/state.h"

#include <algorithm>

namespace kw {

BlockResult evaluateblock(QpDivisors (*divisors)(float centerfreq))
{
    resetcorrectionsegments();
    st.qpstate = 0;
    const float d = distancecorrection();
    float f = st.centerfreq;
    correctionat(f);
    st.correction -= d;
    const QpDivisors qp = divisors(st.centerfreq);

    BlockResult result;
    RangeTrack range = beginrange();
    double avg = 0;
    const int points = std::clamp(int(st.pointcount), 1, kTraceSize - 1);
    ResumeNext onError;
    for (int i = 1; i <= points; ++i) {
        onError([&] {
            const int raw = noisegate(st.rawblock[size_t(i)], st.noisevalue);
            const int16_t count = addcorrection(rawtocount(raw, st.dbperdiv, st.attenuator, st.reflevel), st.correction);
            range.see(count);
            const int s = countstowholedb(count);
            if (i == 1) {
                result.peak = s;
                avg = undb20(s) / points;
                return;
            }
            if (s > result.peak)
                result.peak = s;
            const double u = undb20(s);
            if (st.detaverage)
                avg += u / points;
            if (st.detqpeak)
                qpstep(u, qp);
        });
    }
    onError([&] { finishrange(range); });
    result.average = db20(avg);
    result.qpeak = db20(st.qpstate);
    return result;
}

}  // namespace kw
