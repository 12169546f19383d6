#include "levels/units.h"

#include "shell/state.h"

namespace kw {

float shownlevel(float dbmw) { return dbmw + st.unitoffset; }

float shownlevelcount(int count) { return float(count / 2.5 + double(st.unitoffset)); }

float shownreflevel() { return st.reflevel + st.attenuator + st.unitoffset; }

float reflevelfromtyped(float typed) { return typed - st.attenuator - st.unitoffset; }

}  // namespace kw
