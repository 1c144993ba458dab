// The encodings of the texts of one block, applied before compression.
//
// A byte names the encoding of what follows. Texts are bytes; the null text and the empty text stay
// distinct. The choice depends on the values alone.
// Layout: docs/gel-format.md, "Encodings of texts".
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/text_dictionary.h"
#include "columnar/codecs/text_values.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class TextEncoding : std::uint8_t {
  plain = 0,       // all lengths, then all bytes
  dictionary = 1,  // the texts that occur in their order, and a code for each row
};

// An entry of a dictionary shares at most this number of bytes with the previous one.
inline constexpr std::size_t kMaxSharedBytes = 255;

// Texts in the form that rows point to: a 32-bit length, then the bytes. Several rows may share
// one.
struct DecodedTexts {
  ByteBuffer bytes;
  // For each row, the offset of its text in `bytes`; a single one where all rows have the same
  // text.
  std::vector<std::uint32_t> offsets;

  const unsigned char* text(std::size_t row) const { return bytes.data() + offsets[row]; }
};

class TextEncoder {
 public:
  // Appends the encoding byte and the texts, of which there is at least one. The pool saves time
  // only.
  void append(const TextValues& texts, StringPool& pool, ByteBuffer& out);
  // The different texts of the last append() in their order; none when they are too many for a
  // dictionary.
  std::span<const TextDictionary::Entry> entries() const { return m_dictionary.entries(); }

 private:
  TextDictionary m_dictionary;
  std::vector<std::uint32_t> m_lengths;  // of the entries
  std::vector<std::uint8_t> m_bytes;     // codes or numbers of shared bytes, a byte each
};

// `bytes` begin with the encoding byte. Their structure is checked before `texts` allocates.
// `unknownEncoding` is set to the encoding byte when this version does not know it.
[[nodiscard]] ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, DecodedTexts& texts,
                                     int& unknownEncoding);

}  // namespace kelvarin
