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
#include "columnar/codecs/token_table.h"

namespace kelvarin {

struct TrainedSymbols {
  // All symbols: bytes, ends, tokens, pieces, phrases.
  std::vector<Symbol> symbols;
  std::size_t firstPiece = 0;
  std::size_t firstPhrase = 0;
  std::vector<SymbolPair> phrases;   // the symbols that each phrase is made of
  std::vector<std::uint16_t> order;  // indices of the symbols in their order
  TokenTable tokens;                 // of all texts since then
  TokenSpellings spellings;          // of these
  bool areBytesEnough = false;       // tokens, pieces and phrases gain little
  int partsLeft = 0;                 // of texts that they are used for

  void forget() { partsLeft = 0; }
};

}  // namespace kelvarin
