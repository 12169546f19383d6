#pragma once
// From the analyser's raw level byte to a level count (2.5 counts to the dB, 0 = 0 dBmW).
// Raw 227 is the top of the screen, which stands at attenuator + reflevel; at 10 dB per division a
// raw step is one count, at 5 dB per division half a count, and the truncation merges neighbours.
// Out-of-range results raise the classic overflow (VbError 6) for the caller to handle.

#include <cstdint>

namespace kw {

constexpr int kRawTop = 227;

// Truncated toward zero: ((raw - 227) * dbperdiv / 10 + (attenuator + reflevel) * 2.5).
int16_t rawtocount(int raw, int dbperdiv, float attenuator, float reflevel);

// Adds a correction in dB, the sum rounded to the nearest count with halves to even.
int16_t addcorrection(int16_t count, float correctiondb);

// Stepped data: raw bytes below the noise value read as 0 before the conversion.
int noisegate(int raw, double noisevalue);

// Stepped data: counts to whole dB, halves to even.
int16_t countstowholedb(int16_t count);

// The frequency of point i of a trace in storetrace: point 1 lies one step above freqstart.
float tracepointfreq(float freqstart, float freqstop, int32_t pointcount, int i);

}  // namespace kw
