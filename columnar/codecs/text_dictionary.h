// The different texts of a block in their order, and which of them each row has.
//
// The null text comes first; the others are in the order of their bytes. Used by TextEncoder.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/string_pool.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextDictionary {
 public:
  static constexpr std::size_t kMaxEntries = 65536;

  struct Entry {
    const unsigned char* bytes;
    std::uint32_t length;
  };

  // False, and there are no entries, when too many texts differ for a small dictionary. `pool` has
  // the texts of the column's earlier blocks. It and `texts` outlive the use of the dictionary.
  // `maxShareOfTrial` is how many 16ths of the first texts may differ.
  [[nodiscard]] bool fill(const TextValues& texts, StringPool& pool, std::size_t maxShareOfTrial);
  void clear() { m_entries.clear(); }

  std::span<const Entry> entries() const { return m_entries; }
  // For each row, the index of its text among the entries.
  std::span<const std::uint16_t> codes() const { return m_codes; }

 private:
  [[nodiscard]] bool findIndices(const TextValues& texts, StringPool& pool,
                                 std::size_t maxShareOfTrial);

  std::vector<Entry> m_entries;
  std::vector<std::uint16_t> m_codes;
  std::vector<std::uint32_t> m_indices;      // in the pool, of the rows' texts
  std::vector<std::uint16_t> m_codeOfIndex;  // by index in the pool, of the block's texts
};

}  // namespace kelvarin
