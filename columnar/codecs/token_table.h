// The different tokens of texts, how often each occurs, and which symbol it has.
//
// Used by SymbolCutter. An index stays the same until clear().
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/symbol.h"
#include "columnar/codecs/text_hash.h"

namespace kelvarin {

class TokenTable {
 public:
  static constexpr std::uint16_t kNoSymbol = 0xFFFF;

  struct Entry {
    Symbol token;
    std::uint32_t count = 0;
    std::uint16_t symbol = kNoSymbol;
  };

  // Forgets all tokens; about so many different ones are expected.
  void clear(std::size_t expected);
  // The index of a token, which is added when it is new; its count grows by one.
  std::uint32_t count(const Symbol& token) {
    std::uint32_t& slot = slotOf(token);
    if (slot == 0) {
      return add(token);
    }
    ++m_entries[slot - 1].count;
    return slot - 1;
  }
  // Adds a token, of which there are none yet.
  void expect(const Symbol& token) { m_entries[add(token)].count = 0; }
  std::span<Entry> entries() { return m_entries; }

 private:
  // The slot of the token, or a free one: 0, else an index and 1.
  std::uint32_t& slotOf(const Symbol& token) {
    std::size_t at = mixed(token.low ^ 0x9E3779B97F4A7C15ull, token.high ^ 0xD1B54A32D192ED03ull);
    for (;; ++at) {
      std::uint32_t& slot = m_slots[at & m_mask];
      if (slot == 0 || m_entries[slot - 1].token == token) {
        return slot;
      }
    }
  }
  std::uint32_t add(const Symbol& token);

  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_slots;
  std::size_t m_mask = 0;
};

}  // namespace kelvarin
