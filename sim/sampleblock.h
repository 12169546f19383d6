#pragma once
// The analyser's 2048-byte sample block: 2001 level bytes, a 43-character text trailer with the
// centre frequency in its characters 18 to 25, a three-byte checksum of the level bytes (high byte
// first) and one further byte.

#include "sim/signal.h"

#include <QByteArray>
#include <cstdint>

namespace kt {

constexpr int kBlockSize = 2048;
constexpr int kTrailerSize = 43;

// Faults the simulator can be told to make.
struct BlockFaults {
    bool wrongChecksum = false;  // the checksum is off by one
    int cutShortAt = -1;         // when 0..2047, only that many bytes are sent
};

// Plain sum of the level bytes.
uint32_t levelChecksum(const QByteArray &levels);
// The trailer for a block taken at the given settings; characters 18 to 25 hold "0000.000".
QByteArray blockTrailer(const SimSettings &s);
// A block around kPoints level bytes.
QByteArray sampleBlock(const QByteArray &levels, const SimSettings &s, const BlockFaults &faults = {});
// The block of the trace that s.shown selects, as the analyser sends it on "#bm1" at time t.
QByteArray buildSampleBlock(const SimSettings &s, SimSignal &signal, double t, const BlockFaults &faults = {});

// The centre frequency step of "#ss2" for a resolution bandwidth in kHz, in MHz.
double stepSizeMHz(int bandwith);

}  // namespace kt
