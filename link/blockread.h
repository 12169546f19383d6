#pragma once
// The sample block on the wire. After the echo of its command the analyser sends 2048 bytes with
// no handshake: 2001 level bytes, a 43-character trailer, three checksum bytes (high first) and
// one more. They are collected as they come, each byte waited for with the serial time-out.

#include <QString>
#include <cstdint>

namespace kw {

constexpr int kBlockBody = 2044;  // level bytes and trailer, kept in rawblock by 1-based index

// Sends st.command one character at a time with up to three tries for each character (the block
// command has its own echo loop). False after a third failed try; nothing is told here.
bool sendblockcommand();

// Reads bytes 1..2044 into st.rawblock, summing those up to pointcount into sum; the bytes beyond
// go to trailer when one is given. Then waits for the four closing bytes and reads the three of the
// checksum into received. False on a time-out, which has been told by serialfault.
bool receiveblock(uint32_t &sum, uint32_t &received, QString *trailer);

}  // namespace kw
