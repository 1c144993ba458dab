// Which pairs of neighbouring symbols save most when they become symbols of their own.
//
// Used by SymbolPhrases and SymbolPieces.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "columnar/codecs/symbol.h"

namespace kelvarin {

struct SymbolPair {
  std::uint16_t left;
  std::uint16_t right;
};

class SymbolPairs {
 public:
  // The best pairs of the sequence, `maxPairs` at most, in an order that follows from it.
  std::span<const SymbolPair> find(std::span<const std::uint16_t> sequence,
                                   std::span<const Symbol> symbols, std::size_t maxPairs);
  // What the pairs of the last find() save of the sequence, a part of 1; an upper estimate.
  float saving() const { return m_saving; }

 private:
  static constexpr std::uint32_t kFree = 0xFFFFFFFF;

  struct Count {
    std::uint32_t key = kFree;  // both symbols
    std::uint32_t count = 0;
  };

  void count(std::span<const std::uint16_t> sequence, std::span<const Symbol> symbols);

  std::vector<Count> m_counts;
  std::vector<std::uint32_t> m_symbolCounts;
  std::vector<std::pair<float, std::uint32_t>> m_gains;
  std::vector<SymbolPair> m_pairs;
  float m_saving = 0;
};

}  // namespace kelvarin
