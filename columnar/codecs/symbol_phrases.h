// Pairs of symbols that are joined into one where they meet: phrases of frequent tokens.
//
// Used by SymbolCutter.
#pragma once

#include <cstdint>
#include <vector>

#include "columnar/codecs/symbol_pairs.h"

namespace kelvarin {

class SymbolPhrases {
 public:
  SymbolPhrases() : m_slots(kSlots) {}

  void clear();
  // False, and nothing is added, when an earlier pair takes its slot.
  bool add(SymbolPair pair, std::uint16_t symbol);
  // Joins pairs from the left to the right, once, and returns how many symbols are left.
  std::size_t join(std::span<std::uint16_t> sequence);

 private:
  // The cutter's symbols are below 2^13.
  static constexpr int kSymbolBits = 13;
  static constexpr std::uint32_t kSlots = 1u << kSymbolBits;
  static constexpr std::uint16_t kFree = 0xFFFF;

  // What is left of a pair when its slot is known, and the symbol of both. No pair leaves what a
  // free slot has.
  struct Slot {
    std::uint16_t rest = kFree;
    std::uint16_t symbol = 0;
  };
  // Each pair has one slot, so that joining has no branches. An odd factor keeps all pairs apart,
  // so the slot and the rest are the pair.
  static std::uint32_t hashOf(std::uint32_t left, std::uint32_t right) {
    constexpr std::uint32_t kFactor = 0x9E3779B1u;
    return (left << kSymbolBits | right) * kFactor & (kSlots * kSlots - 1);
  }

  std::vector<Slot> m_slots;
};

}  // namespace kelvarin
