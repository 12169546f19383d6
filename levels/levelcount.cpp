#include "levels/levelcount.h"

#include "platform/vbformat.h"

#include <cmath>

namespace kw {

namespace {
// The 16-bit subtraction of the raw value: a cell of rawblock is a 16-bit integer.
int16_t sub16(int raw, int by)
{
    const int d = raw - by;
    if (d < INT16_MIN || d > INT16_MAX)
        throw VbError(6);
    return int16_t(d);
}

// CInt: halves to even, out of range (or not a number) the classic overflow.
int16_t cint16(double v)
{
    if (!(v >= -32768.5 && v < 32767.5))
        throw VbError(6);
    return vbCInt(v);
}
}  // namespace

int16_t rawtocount(int raw, int dbperdiv, float attenuator, float reflevel)
{
    const int16_t a = sub16(raw, kRawTop);
    // A byte over an integer divides in single precision, and so does the product with the raw
    // difference; the single sum of attenuator and reference times 2.5 is a double.
    const float scaled = float(dbperdiv) / 10.0f * float(a);
    const float top = attenuator + reflevel;
    const double level = double(scaled) + double(top) * 2.5;
    return cint16(std::trunc(level));
}

int16_t addcorrection(int16_t count, float correctiondb)
{
    return cint16(count + double(correctiondb) * 2.5);
}

int noisegate(int raw, double noisevalue) { return raw < noisevalue ? 0 : raw; }

int16_t countstowholedb(int16_t count) { return cint16(count / 2.5); }

float tracepointfreq(float freqstart, float freqstop, int32_t pointcount, int i)
{
    // The width is a single-precision difference; the rest runs in double and lands in a single.
    const float width = freqstop - freqstart;
    return float(double(width) / pointcount * i + double(freqstart));
}

}  // namespace kw
