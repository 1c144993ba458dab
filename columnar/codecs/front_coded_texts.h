// Texts without the bytes that each has in common with the beginning of the one before it, which
// makes sorted texts small: the entries of a dictionary.
//
// The rest is stored as it is, or, where that is smaller, in Huffman codes.
// Used by TextEncoder and by the decoder of texts.
// Layout: docs/gel-format.md, "Encodings of texts".
// Errors: a read returns false where the bytes are damaged.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "columnar/codecs/huffman_codes.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class FrontCodedEncoder {
 public:
  void append(const TextValues& texts, ByteBuffer& out);
  // In Huffman codes. False, and `out` is unspecified, where a text is too long for them.
  [[nodiscard]] bool appendCoded(const TextValues& texts, ByteBuffer& out);

 private:
  void findShared(const TextValues& texts);
  void appendSymbols(std::span<const std::uint16_t> symbols, ByteBuffer& out);

  std::vector<std::uint8_t> m_shared;  // bytes in common with the previous text
  std::vector<std::uint16_t> m_symbols;
  std::vector<std::uint32_t> m_counts;  // of the symbols
  HuffmanEncoder m_codes;
};

// These read `count` texts to the end of the reader's bytes.
[[nodiscard]] bool decodeFrontCoded(ByteReader& reader, std::size_t count, DecodedTexts& texts);
[[nodiscard]] bool decodeCodedEntries(ByteReader& reader, std::size_t count, DecodedTexts& texts);

}  // namespace kelvarin
