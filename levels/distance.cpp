#include "levels/distance.h"

#include "levels/levelmath.h"
#include "shell/state.h"

namespace kw {

float distanceterm(float configdist, float lmaxdist, bool correctionon)
{
    if (!(configdist > 0) || configdist == lmaxdist || !(lmaxdist > 0) || !correctionon)
        return 0.0f;
    const float ratio = lmaxdist / configdist;  // a quotient of two singles is a single
    return float(20.0 * log10floor(double(ratio)));
}

float distancecorrection()
{
    st.distancecorrection = distanceterm(st.configdist, st.lmaxdist, st.correctionon == 1);
    return st.distancecorrection;
}

}  // namespace kw
