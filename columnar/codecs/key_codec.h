// The integer codecs of key columns: keys of one block to 32-bit words and back.
//
// Plain keys are packed in groups of 128 with exceptions; the remaining keys, fewer than 128, take
// a variable number of bytes. Sorted keys are delta-coded first, modulo 2^32, so keys out of order
// survive; deltas start from 0 in the packed part and again in the rest. A descending column is
// reversed before encoding and after decoding. Used by ChunkEncoder and ChunkDecoder.
// Source of the packing: D. Lemire and L. Boytsov, "Decoding billions of integers per second
// through vectorization", Software: Practice and Experience 45 (2015).
// Layout: docs/gel-format.md, "Integer codecs".
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

class KeyCodec {
 public:
  KeyCodec();
  ~KeyCodec();
  KeyCodec(const KeyCodec&) = delete;
  KeyCodec& operator=(const KeyCodec&) = delete;

  // Replaces the content of `words`. There is at least one key.
  void encode(std::span<const std::uint32_t> keys, StorageCode code, ByteBuffer& words);

  // Checks the structure of the words before it allocates or decodes anything. Writes `rows` keys
  // to `keys`. The address of the words is a multiple of 4.
  [[nodiscard]] ReadStatus decode(Bytes words, StorageCode code, std::uint32_t rows,
                                  ByteBuffer& keys);

  // An upper bound of the encoded size.
  static std::uint64_t maximumEncodedSize(std::uint64_t rows);

 private:
  struct Library;  // the codecs of the library
  std::unique_ptr<Library> m_library;
  ByteBuffer m_ordered;  // keys reversed or replaced by deltas
};

}  // namespace kelvarin
