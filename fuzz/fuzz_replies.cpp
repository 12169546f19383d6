// Query replies as any text: from the third character on they become the value that is stored
// into a whole-number, byte or float field, or a field keeps its value.

#include "link/commandtext.h"
#include "platform/vbformat.h"
#include "support/fuzzsupport.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kw::fuzz::prepare();
    const QString reply = QString::fromLatin1(kw::fuzz::bytes(data, size));
    const std::optional<double> value = kw::vbVal(reply.mid(2));

    int16_t span = 100;
    uint8_t mode = 1;
    float level = -30.0f;
    kw::storeInt16(value, span);
    kw::storeByte(value, mode);
    kw::storeFloat(value, level);
    if (!std::isfinite(level))
        std::abort();
    // The wire texts made from what was stored are sent back out: they must format.
    (void)kw::trimmedNumber(double(span));
    (void)kw::trimmedSingle(level);
    (void)kw::signedLevel(level);
    return 0;
}
