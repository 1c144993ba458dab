// Encodes and decodes column chunks: the values of one column in one block of rows.
//
// Used by writer/column_set_worker.cpp, by reader/ and by the fuzz targets.
// Layout: docs/gel-format.md, "Column chunks". A chunk is its checksum and a Snappy stream; inside
// that stream are the words of an integer codec, or an encoding byte and the encoded values.
//
// Decoding takes nothing in a chunk for granted: it allocates more than a few times the size of the
// chunk only when the bytes are consistent with the row count.
// Errors: ReadStatus; never logs, throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/key_codec.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/row_counts.h"
#include "columnar/codecs/text_encoder.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/format/read_status.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

inline constexpr std::size_t kChunkChecksumSize = 4;
// The checksum, and the length at the beginning of a Snappy stream.
inline constexpr std::size_t kMinChunkSize = kChunkChecksumSize + 1;
// Chunk sizes are 32-bit numbers even where compression makes the values larger.
inline constexpr std::uint64_t kMaxTextsSize = 0xD0000000;  // lengths of 32 bits included
inline constexpr std::uint32_t kMaxRowsInBlock = 400'000'000;

class ChunkEncoder {
 public:
  // Appends a chunk to `out` and returns its size. There is at least one value, and no more than
  // the limits above allow. Numbers are passed as their bits.
  std::size_t appendKeys(std::span<const std::uint32_t> keys, StorageCode code, ByteBuffer& out);
  std::size_t appendNumbers(std::span<const std::uint64_t> numbers, ByteBuffer& out);
  std::size_t appendTexts(const TextValues& texts, ByteBuffer& out);
  // The same with what the column's earlier blocks have shown, in less time.
  std::size_t appendTexts(const TextValues& texts, TextHistory& history, ByteBuffer& out);
  // The different texts of the last call of appendTexts(), see TextEncoder.
  std::span<const TextDictionary::Entry> differentTexts() const { return m_texts.entries(); }

 private:
  std::size_t appendCompressed(ByteBuffer& out);

  KeyCodec m_keyCodec;
  ByteBuffer m_raw;
  NumberEncoder m_numbers;
  TextEncoder m_texts;
};

class ChunkDecoder {
 public:
  // `chunk` begins with its checksum. A key takes 4 bytes, a number 8. After any status but ok the
  // output is unspecified.
  [[nodiscard]] ReadStatus decodeKeys(Bytes chunk, StorageCode code, std::uint32_t rows,
                                      ByteBuffer& keys);
  [[nodiscard]] ReadStatus decodeNumbers(Bytes chunk, std::uint32_t rows, ByteBuffer& numbers);
  [[nodiscard]] ReadStatus decodeTexts(Bytes chunk, std::uint32_t rows, DecodedTexts& texts,
                                       TextForm form = TextForm::made);

  // Which of the row counts in `known` the chunk can have.
  RowCounts possibleRowCounts(Bytes chunk, GelType type, RowCounts known);

  // The encoding byte of the last chunk when it was refused for being unknown, else -1.
  int unknownEncoding() const { return m_unknownEncoding; }

 private:
  [[nodiscard]] ReadStatus uncompress(Bytes chunk, std::uint64_t maximumSize);

  KeyCodec m_keyCodec;
  ByteBuffer m_raw;
  int m_unknownEncoding = -1;
};

}  // namespace kelvarin
