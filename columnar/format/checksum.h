// The checksum of chunks and descriptor records: two sums over 16-bit words, each modulo 65535.
//
// The first sum adds the words, the second adds the first sum after every word. The bytes are taken
// as little-endian words; a last group of fewer than 8 bytes is padded with zeros to 8. Reducing
// folds, x mod 65536 + x / 65536, so a sum that is not 0 ends between 1 and 65535: the words 0xFFFF
// and 0x0000 yield different checksums only where all other words are 0.
// Source: J. G. Fletcher, "An Arithmetic Checksum for Serial Transmissions", IEEE Transactions on
// Communications 30 (1982).
// Layout: docs/gel-format.md, "Checksum".
// Threads: any.
#pragma once

#include "base/byte_cursor.h"

namespace kelvarin {

// Uses the processor's 256-bit operations where it has them; the result is the same.
std::uint32_t checksum(Bytes bytes);

// The same, as on a processor without them.
std::uint32_t portableChecksum(Bytes bytes);

}  // namespace kelvarin
