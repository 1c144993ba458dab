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
#include "columnar/codecs/token_table.h"
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
  void useTrained(const TrainedSymbols& trained);
  void spellAll(const TextValues& texts);
  [[nodiscard]] bool areBytesEnough(const TextValues& texts) const;
  [[nodiscard]] bool train(TrainedSymbols& trained);
  [[nodiscard]] bool areTokensRare();
  void countTokens(const TextValues& texts);
  void chooseTokens(const TrainedSymbols& trained);
  void choosePieces();
  void choosePhrases();
  void appendSample();
  void spellTokens();
  void appendTokens(std::span<const std::uint32_t> indices);
  void joinPhrases();

  TextTokens m_texts;
  TokenTable m_tokens;
  std::vector<std::uint32_t> m_memory;       // for the indices, as long as they can get
  std::span<const std::uint32_t> m_indices;  // of the texts' tokens
  // What the tokens become, a symbol or several each, and for each token the offset there with, in
  // the lowest bits, how many symbols they are.
  std::vector<std::uint16_t> m_spellings;
  std::vector<std::uint32_t> m_spellingOf;
  std::vector<std::pair<float, std::uint32_t>> m_gains;
  SymbolPairs m_pairs;
  SymbolPieces m_pieces;
  SymbolPhrases m_phrases;
  std::vector<SymbolPair> m_phrasePairs;
  int m_phraseRounds = 0;
  std::vector<Symbol> m_symbols;
  std::vector<std::uint16_t> m_sequence;  // as long as it can get
  std::uint16_t* m_end = nullptr;
};

}  // namespace kelvarin
