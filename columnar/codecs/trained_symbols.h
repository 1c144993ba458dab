// The symbols that were chosen for some texts of a column, for the texts that follow them.
//
// What each block's texts are made of is stored with the block, without the symbols that do not
// occur; so this only spares choosing them again.
// Used by SymbolCutter.
#pragma once

#include <cstdint>
#include <vector>

#include "columnar/codecs/symbol.h"
#include "columnar/codecs/symbol_pairs.h"

namespace kelvarin {

struct TrainedSymbols {
  // All symbols: bytes, ends, tokens, pieces, phrases.
  std::vector<Symbol> symbols;
  std::size_t firstPiece = 0;
  std::size_t firstPhrase = 0;
  std::vector<SymbolPair> phrases;  // the symbols that each phrase is made of
  int phraseRounds = 0;
  std::vector<std::uint16_t> order;  // indices of the symbols in their order
  bool areBytesEnough = false;       // tokens, pieces and phrases gain little
  int partsLeft = 0;                 // of texts that they are used for

  // Behind those of bytes and ends.
  std::size_t tokenCount() const {
    constexpr std::size_t kOthers = 258;
    return symbols.empty() ? 0 : firstPiece - kOthers;
  }
  void forget() { partsLeft = 0; }
};

}  // namespace kelvarin
