// The encodings of the texts of one block, applied before compression.
//
// A byte names the encoding of what follows. Texts are bytes; the null text and the empty text stay
// distinct. The choice depends on the values alone.
// Layout: docs/gel-format.md, "Encodings of texts".
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class TextEncoding : std::uint8_t {
  plain = 0,              // all lengths, then all bytes
  dictionary = 1,         // the texts that occur in their order, and a code for each row
  shaped = 2,             // templates, and their fields as columns
  symbols = 3,            // codes of frequent byte sequences
  encodedDictionary = 4,  // a code for each row, and the texts that occur in an encoding
  frontCoded = 5,         // what each text does not have in common with the previous one
  codedEntries = 6,       // the same in Huffman codes
};

class ShapedTexts;

enum class TextForm : std::uint8_t {
  made,
  late,  // those with a shape may be kept as their fields, until they are needed
};

// Texts in the form that rows point to: a 32-bit length, then the bytes. Several rows may share
// one.
struct DecodedTexts {
  ByteBuffer bytes;  // in memory with kTextMargin bytes behind them
  // For each row, the offset of its text in `bytes`; a single one where all rows have the same
  // text.
  std::vector<std::uint32_t> offsets;
  // Where few texts are stored for many rows: their offsets, and for each row which one it has. The
  // same text may be stored more than once, or for no row. Else both are empty.
  std::vector<std::uint32_t> entries;
  std::vector<std::uint16_t> codes;
  // Instead of all others, where the texts are kept as their fields.
  std::shared_ptr<const ShapedTexts> shaped;

  // More entries would not spare much.
  static constexpr std::size_t maxEntries(std::size_t rows) {
    return std::min<std::size_t>(rows / 2, 1 << 16);
  }
  const unsigned char* text(std::size_t row) const { return bytes.data() + offsets[row]; }
};

// `bytes` begin with the encoding byte. Their structure is checked before `texts` allocates.
// `unknownEncoding` is set to the encoding byte when this version does not know it.
[[nodiscard]] ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, TextForm form,
                                     DecodedTexts& texts, int& unknownEncoding);

}  // namespace kelvarin
