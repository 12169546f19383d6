#pragma once
// The measuring-distance term: a trace taken at the configuration's distance is shown as if taken
// at the distance its peak limit was defined for (field strength falls with 1/r).

namespace kw {

// 0 unless correction is on and both distances are known and differ; else 20 log10(lmax / config).
float distanceterm(float configdist, float lmaxdist, bool correctionon);

// The same over the record, stored in st.distancecorrection and returned.
float distancecorrection();

}  // namespace kw
