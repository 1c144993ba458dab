// What tokens are spelled as: one symbol or several each, in a list of all.
//
// Used by SymbolCutter, which writes a spelling for each token of the texts.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "columnar/codecs/symbol.h"
#include "columnar/codecs/symbol_pieces.h"

namespace kelvarin {

// Where the symbols are in the list, and how many there are.
struct TokenSpelling {
  std::uint32_t offset = 0;
  std::uint32_t count = 0;

  bool isThere() const { return count > 0; }
};

class TokenSpellings {
 public:
  // The bytes of a token and its end, each a symbol.
  static constexpr std::size_t kLongest = 16;
  static_assert(kLongest > kMaxSymbolSize);

  // Forgets all but those of one symbol.
  void clear();
  static TokenSpelling ofSymbol(std::uint16_t symbol) { return {symbol, 1}; }
  // By pieces, and behind them `end` where the token ends a text.
  TokenSpelling add(const Symbol& token, const SymbolPieces& pieces, std::uint16_t end);

  // Writes the symbols of a spelling; behind them up to kLongest others may be overwritten.
  void write(TokenSpelling spelling, std::uint16_t*& out) const {
    constexpr std::size_t kUsual = kLongest / 2;
    const std::uint16_t* from = m_symbols.data() + spelling.offset;
    std::memcpy(out, from, kUsual * sizeof *from);
    if (spelling.count > kUsual) [[unlikely]] {
      std::memcpy(out + kUsual, from + kUsual, kUsual * sizeof *from);
    }
    out += spelling.count;
  }

 private:
  std::vector<std::uint16_t> m_symbols;  // first all that there can be; at the end kLongest unused
};

}  // namespace kelvarin
