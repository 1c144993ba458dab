// Cuts the texts of a block into symbols, which it chooses by what occurs in them.
//
// Frequent tokens are symbols; rare ones are spelled byte by byte; then pairs of symbols that often
// meet become symbols of their own, as a sample of the texts shows.
// Used by SymbolTextEncoder.
// Source of the idea of a static table of symbols for each block: P. Boncz, T. Neumann, V. Leis,
// "FSST: fast random access string compression", PVLDB 13 (2020).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/symbol_pairs.h"
#include "columnar/codecs/symbol_phrases.h"
#include "columnar/codecs/symbol_pieces.h"
#include "columnar/codecs/text_tokens.h"
#include "columnar/codecs/text_values.h"
#include "columnar/codecs/trained_symbols.h"

namespace kelvarin {

class SymbolCutter {
 public:
  // There is at least one text, and the texts have bytes. Symbols are chosen anew when the trained
  // ones have been used often enough.
  void cut(const TextValues& texts, TrainedSymbols& trained);
  // Of the last cut(): the symbols, some of which may not occur and two of which may be the same;
  // and the indices of those that the texts are made of.
  std::span<const Symbol> symbols() const { return m_symbols; }
  std::span<const std::uint16_t> sequence() const { return {m_sequence.data(), m_end}; }

 private:
  void beginWithBytes();
  void beginWith(const TextValues& texts, TrainedSymbols& trained);
  void useTrained(TrainedSymbols& trained);
  void spellAll(const TextValues& texts);
  [[nodiscard]] bool areBytesEnough(const TextValues& texts) const;
  [[nodiscard]] bool train(const TextValues& texts, TrainedSymbols& trained);
  void countTokens(const TextValues& texts, TokenTable& tokens);
  void chooseTokens(std::span<TokenTable::Entry> tokens);
  [[nodiscard]] bool isTrialEnough(const TextValues& texts, TrainedSymbols& trained);
  [[nodiscard]] bool arePiecesRare(TrainedSymbols& trained);
  void choosePieces(std::span<const TokenTable::Entry> tokens);
  void choosePhrases(TrainedSymbols& trained);
  void appendSample(const TokenSpellings& spellings);
  void spellTokens(TrainedSymbols& trained);
  void appendTokens(std::span<const std::uint32_t> indices, const TokenSpellings& spellings);

  TextTokens m_texts;
  std::vector<std::uint32_t> m_memory;       // for the indices, as long as they can get
  std::span<const std::uint32_t> m_indices;  // of the texts' tokens
  std::vector<TokenSpelling> m_spellingOf;   // what each token becomes in these texts
  std::vector<std::pair<float, std::uint32_t>> m_gains;
  SymbolPairs m_pairs;
  SymbolPieces m_pieces;
  SymbolPhrases m_phrases;
  std::vector<Symbol> m_symbols;
  std::vector<std::uint16_t> m_sequence;  // as long as it can get
  std::uint16_t* m_end = nullptr;
};

}  // namespace kelvarin
