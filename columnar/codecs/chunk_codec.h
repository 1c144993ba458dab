// Encodes and decodes column chunks: the values of one column in one block of rows.
//
// Used by writer/column_set_worker.cpp, by reader/ and by the fuzz targets.
// Layout: docs/gel-format.md, "Column chunks". A chunk is its checksum and a Snappy stream; inside
// that stream are the words of an integer codec, or a layout byte and the values in that layout.
//
// Decoding takes nothing in a chunk for granted: memory beyond a few times the chunk is taken only
// when its bytes are consistent with the row count.
// Threads: one at a time an object.  Errors: ReadStatus; never logs, never throws but for a lack of
// memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/key_codec.h"
#include "columnar/codecs/number_layout.h"
#include "columnar/codecs/row_counts.h"
#include "columnar/codecs/text_layout.h"
#include "columnar/format/read_status.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

inline constexpr std::size_t kChunkChecksumSize = 4;
// The sizes of chunks are 32-bit numbers, compressed at their worst.
inline constexpr std::uint64_t kMaximumTextsSize = 0xD0000000;  // lengths of 32 bits included
inline constexpr std::uint32_t kMaximumRowsInBlock = 400'000'000;

class ChunkEncoder {
 public:
  // Appends a chunk to `out` and gives its size. There is at least one value, and no more
  // than the limits above; numbers are given by their bits.
  std::size_t appendKeys(std::span<const std::uint32_t> keys, StorageCode code, ByteBuffer& out);
  std::size_t appendNumbers(std::span<const std::uint64_t> numbers, ByteBuffer& out);
  std::size_t appendTexts(const TextValues& texts, ByteBuffer& out);
  // The same chunk, sooner where many of the texts are known from the column's blocks before.
  std::size_t appendTexts(const TextValues& texts, KnownTexts& known, ByteBuffer& out);
  // Of the texts appended last, see TextLayoutEncoder.
  std::span<const TextDictionary::Entry> differentTexts() const { return m_texts.entries(); }

 private:
  std::size_t appendCompressed(ByteBuffer& out);

  KeyCodec m_keyCodec;
  ByteBuffer m_raw;
  NumberLayoutEncoder m_numbers;
  TextLayoutEncoder m_texts;
};

class ChunkDecoder {
 public:
  // `chunk` with its checksum; keys are 4 bytes, numbers 8. On anything but ok the output is
  // unspecified.
  [[nodiscard]] ReadStatus decodeKeys(Bytes chunk, StorageCode code, std::uint32_t rows,
                                      ByteBuffer& keys);
  [[nodiscard]] ReadStatus decodeNumbers(Bytes chunk, std::uint32_t rows, ByteBuffer& numbers);
  [[nodiscard]] ReadStatus decodeTexts(Bytes chunk, std::uint32_t rows, DecodedTexts& texts);

  // The numbers of rows, among those that are `known` to be possible, that the chunk can have.
  RowCounts possibleRowCounts(Bytes chunk, GelType type, RowCounts known);

  // Of the last chunk that was refused for its layout byte; -1 when that was not the reason.
  int unknownLayout() const { return m_unknownLayout; }

 private:
  [[nodiscard]] ReadStatus uncompress(Bytes chunk, std::uint64_t maximumSize);

  KeyCodec m_keyCodec;
  ByteBuffer m_raw;
  int m_unknownLayout = -1;
};

}  // namespace kelvarin
