#include "levels/segmentlimit.h"

#include "levels/levelmath.h"
#include "platform/vbformat.h"

namespace kw {

float segmentlimit(float f, float fL, float lL, float fH, float lH, bool isLog)
{
    if (fH - fL < 0.001f || lL == lH)
        return lL;
    if (!isLog)
        return vbCSng(double(lL) + double(lH - lL) * vbDivide(double(fH - fL), double(fH - f)));
    const double rise = log10floor(f) - log10floor(fL);
    const double width = log10floor(fL) - log10floor(fH);
    return vbCSng(double(lL) - double(lH - lL) * vbDivide(rise, width));
}

}  // namespace kw
