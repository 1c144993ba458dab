// The integer codecs of key columns: keys of one block to 32-bit words and back.
//
// Plain keys are packed in groups of 128 with exceptions, the remaining fewer than 128 with a
// variable number of bytes. Sorted keys are replaced by their differences first (modulo 2^32, so an
// order that is broken survives), starting from 0 in the packed part and again in the rest. A
// descending column is reversed around the codec. Used by ChunkEncoder and ChunkDecoder. Layout:
// docs/gel-format.md, "Integer codecs". Source of the packing: D. Lemire and L. Boytsov, "Decoding
// billions of integers per second through vectorization", Software: Practice and Experience 45
// (2015). Threads: one at a time an object.
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

  // The words replace what `words` held. There is at least one key.
  void encode(std::span<const std::uint32_t> keys, StorageCode code, ByteBuffer& words);

  // Checks the words' structure before anything is decoded, and takes no memory before that. Writes
  // `rows` keys to `keys`. The words begin at a multiple of 4.
  [[nodiscard]] ReadStatus decode(Bytes words, StorageCode code, std::uint32_t rows,
                                  ByteBuffer& keys);

  // No encoding of so many keys has more bytes.
  static std::uint64_t maximumEncodedSize(std::uint64_t rows);

 private:
  struct Library;  // the codecs of the library
  std::unique_ptr<Library> m_library;
  ByteBuffer m_ordered;  // keys reversed or replaced by differences
};

}  // namespace kelvarin
