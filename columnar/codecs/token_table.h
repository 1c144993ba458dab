// The different tokens of a column's texts, how often each occurs in those that are encoded, and
// what it becomes there.
//
// Used by SymbolCutter. An index stays the same until clear().
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/symbol.h"
#include "columnar/codecs/token_spellings.h"

namespace kelvarin {

class TokenTable {
 public:
  static constexpr std::uint16_t kNoSymbol = 0xFFFF;
  static constexpr std::size_t kBatch = 64;

  struct Entry {
    Symbol token;
    std::uint32_t count = 0;
    std::uint16_t symbol = kNoSymbol;         // in the texts that are encoded
    std::uint16_t trainedSymbol = kNoSymbol;  // in all texts
    TokenSpelling spelling;                   // by pieces; not there until it is needed
  };

  // Forgets all tokens; about so many different ones are expected.
  void clear(std::size_t expected);
  // Forgets all tokens and frees their memory; clear() comes before others.
  void release() { *this = TokenTable(); }
  // Forgets the tokens that have no trained symbol, and all spellings.
  void keepTrained();
  // Other texts begin: there are none of any token.
  void beginTexts();
  // Writes the indices of up to kBatch tokens. New ones are added, and the counts grow.
  void count(std::span<const Symbol> batch, std::uint32_t* indices);
  std::span<Entry> entries() { return m_entries; }

 private:
  // What is in the slot of the token, or in a free one: 0, else an index and 1.
  std::uint32_t& slotOf(const Symbol& token) {
    for (std::size_t at = token.hash();; ++at) {
      std::uint32_t& slot = m_slots[at & m_mask];
      if (slot == 0 || m_entries[slot - 1].token == token) {
        return slot;
      }
    }
  }
  std::uint32_t count(const Symbol& token);
  std::uint32_t add(const Symbol& token);
  void fillSlots(std::size_t slots);

  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_slots;
  std::size_t m_mask = 0;
};

}  // namespace kelvarin
