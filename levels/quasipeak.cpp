#include "levels/quasipeak.h"

#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

QpDivisors tabledivisors(float centerfreq)
{
    if (centerfreq < 30.0f)
        return {double(st.tauf30), double(st.tent30)};
    return {double(st.tauf1000), double(st.tent1000)};
}

QpDivisors fixeddivisors(float centerfreq)
{
    return {2.0, centerfreq < 30.0f ? 320.0 : 1100.0};
}

void qpstep(double u, const QpDivisors &divisors)
{
    const double d = u - st.qpstate;
    if (d > 0)
        st.qpstate += vbDivide(d, divisors.charge);
    else if (d < 0)
        st.qpstate += vbDivide(d, divisors.discharge);
}

}  // namespace kw
