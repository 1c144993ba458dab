#include "columnar/codecs/text_dictionary.h"

#include <algorithm>

namespace kelvarin {

bool TextDictionary::fill(const TextValues& texts, StringPool& pool, std::size_t maxShareOfTrial) {
  m_entries.clear();
  if (!findIndices(texts, pool, maxShareOfTrial)) {
    pool.forget();
    return false;
  }
  m_codeOfIndex.resize(pool.size());
  pool.forEachInBlock([this](std::uint32_t index, const StringPool::Text& text) {
    m_codeOfIndex[index] = static_cast<std::uint16_t>(m_entries.size());
    m_entries.push_back({text.bytes, text.length});
  });
  m_codes.resize(m_indices.size());
  std::transform(m_indices.begin(), m_indices.end(), m_codes.begin(),
                 [this](std::uint32_t index) { return m_codeOfIndex[index]; });
  return true;
}

// False as soon as too many texts differ.
bool TextDictionary::findIndices(const TextValues& texts, StringPool& pool,
                                 std::size_t maxShareOfTrial) {
  // The search ends after this number of rows when nearly all of their texts differ.
  constexpr std::size_t kTrialRows = 1024;
  const std::size_t rows = texts.lengths.size();
  const std::size_t maxEntries = std::min(kMaxEntries, rows / 2 + 1);
  const unsigned char* bytes = texts.bytes.data();
  const unsigned char* end = bytes + texts.bytes.size();
  m_indices.resize(rows);
  pool.beginBlock();
  for (std::size_t first = 0; first < rows; first += kTrialRows) {
    const auto lengths = texts.lengths.subspan(first, std::min(kTrialRows, rows - first));
    bytes = pool.find(lengths, bytes, end, m_indices.data() + first);
    if (pool.countInBlock() > maxEntries ||
        (first == 0 && pool.countInBlock() > kTrialRows * maxShareOfTrial / 16)) {
      return false;
    }
  }
  pool.endBlock();
  return true;
}

}  // namespace kelvarin
