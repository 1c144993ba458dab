// The different texts of a block in their order, and which of them each row has.
//
// Used by TextLayoutEncoder. The null text is a text of its own, before all others; the others are in
// the order of their bytes.
// Threads: one at a time.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextDictionary {
 public:
  static constexpr std::size_t kMostEntries = 65536;

  struct Entry {
    std::uint64_t beginning;  // see beginningOf()
    std::uint64_t middle;     // the next 8 bytes
    const unsigned char* bytes;
    std::uint32_t length;
    std::uint32_t code;  // in the order of their first rows
  };

  // False when there are too many different texts for a dictionary to be small; what entries() and
  // codes() give means nothing then. The texts outlive their use.
  [[nodiscard]] bool fill(const TextValues& texts);

  std::span<const Entry> entries() const { return m_entries; }
  // For each row, the place of its text among the entries.
  std::span<const std::uint16_t> codes() const { return m_codes; }

 private:
  // Enough to bring most entries into their order.
  struct SortKey {
    std::uint64_t beginning;
    std::uint32_t code;
  };

  std::uint32_t findOrAdd(const unsigned char* bytes, std::uint32_t length);
  void sort();

  std::vector<Entry> m_entries;
  std::vector<Entry> m_unordered;
  std::vector<SortKey> m_keys;
  std::uint32_t m_last = 0;  // of the row before, among the entries
  std::vector<std::uint32_t> m_slots;  // place among the entries, from 1
  std::vector<std::uint16_t> m_codes;
  std::vector<std::uint16_t> m_ranks;
};

}  // namespace kelvarin
