// The table of symbols that a block's texts are made of, as it is stored.
//
// Layout: docs/gel-format.md, "Texts of symbols".
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/huffman_codes.h"
#include "columnar/codecs/symbol.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class SymbolTableEncoder {
 public:
  // Writes symbols in the order of Symbol::order().
  void append(std::span<const Symbol> symbols, ByteBuffer& out);

 private:
  void appendCodes(std::span<const std::uint16_t> values, ByteBuffer& out);

  std::vector<std::uint16_t> m_sizes;  // of each symbol, shared and own bytes
  std::vector<std::uint16_t> m_bytes;  // the own bytes of all symbols
  HuffmanEncoder m_codes;
};

// A symbol ready to be written: its bytes, and at the index 15 how many of them there are, those
// for the next length included, and whether it ends a text.
struct DecodedSymbol {
  unsigned char bytes[sizeof(Symbol)];

  static constexpr unsigned char kEnds = 0x80;

  // The last byte, and what it says.
  unsigned last() const { return bytes[sizeof bytes - 1]; }
  static unsigned step(unsigned last) { return last & 0x1F; }
  static unsigned endedTexts(unsigned last) { return last >> 7; }
};

// Reads a table of symbols; the null text, if there is one, is the last. False where it is damaged.
[[nodiscard]] bool readSymbolTable(ByteReader& reader, std::vector<DecodedSymbol>& symbols,
                                   bool& hasNull);

}  // namespace kelvarin
