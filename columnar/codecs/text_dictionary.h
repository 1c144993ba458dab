// The different texts of a block in their order, and which of them each row has.
//
// Used by TextLayoutEncoder. The null text is a text of its own, before all others; the others are
// in the order of their bytes. Threads: one at a time.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/known_texts.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextDictionary {
 public:
  static constexpr std::size_t kMostEntries = 65536;

  struct Entry {
    const unsigned char* bytes;
    std::uint32_t length;
  };

  // False when there are too many different texts for a dictionary to be small; there are no
  // entries then. `texts` and `known`, the column's texts before the block, outlive the use of
  // both.
  [[nodiscard]] bool fill(const TextValues& texts, KnownTexts& known);

  std::span<const Entry> entries() const { return m_entries; }
  // For each row, the place of its text among the entries.
  std::span<const std::uint16_t> codes() const { return m_codes; }

 private:
  [[nodiscard]] bool findPlaces(const TextValues& texts, KnownTexts& known);

  std::vector<Entry> m_entries;
  std::vector<std::uint16_t> m_codes;
  std::vector<std::uint32_t> m_places;       // of the rows' texts among the known ones
  std::vector<std::uint16_t> m_codeOfPlace;  // of the block's texts among the known ones
};

}  // namespace kelvarin
