// Texts as symbols: frequent sequences of bytes, which a table names once, in Huffman codes.
//
// For free texts: sentences, lines of code. Used by TextEncoder and by decodeTexts().
// Layout: docs/gel-format.md, "Texts of symbols".
// Threads: any.
#pragma once

#include <cstdint>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/huffman_codes.h"
#include "columnar/codecs/row_counts.h"
#include "columnar/codecs/symbol_cutter.h"
#include "columnar/codecs/symbol_table.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

struct DecodedTexts;

class SymbolTextEncoder {
 public:
  // Encodes the texts and returns the bytes that append() takes for them; 0 when texts are not
  // stored so, since they are very long or all one symbol.
  std::size_t fit(const TextValues& texts, TrainedSymbols& trained);
  // Appends the texts of the last fit(), which did not return 0.
  void append(ByteBuffer& out) const { out.append(m_encoded.bytes()); }

 private:
  // A symbol by its order, see Symbol::order().
  struct OrderedSymbol {
    std::uint64_t first;
    std::uint64_t last;
    std::uint16_t index;

    auto operator<=>(const OrderedSymbol&) const = default;
  };

  [[nodiscard]] bool appendPart(const TextValues& texts, TrainedSymbols& trained);
  void countSymbols();
  void orderUsed(const TrainedSymbols& trained);
  void numberSymbols(const TrainedSymbols& trained);

  SymbolCutter m_cutter;
  SymbolTableEncoder m_table;
  HuffmanEncoder m_codes;
  ByteBuffer m_encoded;
  std::vector<std::uint32_t> m_counts;   // by the cutter's index
  std::vector<std::uint16_t> m_numbers;  // by the cutter's index
  std::vector<Symbol> m_symbols;         // by number
  std::vector<std::uint32_t> m_numberCounts;
  std::vector<OrderedSymbol> m_added;  // those that are not trained
  std::vector<std::uint16_t> m_order;  // the cutter's indices of the symbols that occur
};

// Reads what append() has written, to the end of the reader's bytes. Their structure is checked
// before `texts` allocates. False where it is damaged.
[[nodiscard]] bool decodeSymbolTexts(ByteReader& reader, std::size_t rows, DecodedTexts& texts);

// The row count of texts that are stored so, if it is one of `known`.
RowCounts rowCountOfSymbolTexts(ByteReader& reader, RowCounts known);

}  // namespace kelvarin
