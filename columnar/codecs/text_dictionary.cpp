#include "columnar/codecs/text_dictionary.h"

#include <algorithm>
#include <bit>

#include "columnar/codecs/text_hash.h"

namespace kelvarin {

namespace {

using Entry = TextDictionary::Entry;

constexpr std::size_t kBeginningSize = sizeof(std::uint64_t);
constexpr std::size_t kComparedSize = 2 * kBeginningSize;
// After so many rows, texts that are nearly all different are not looked at any further.
constexpr std::size_t kTrialRows = 1024;

// Bytes 8 to 15, filled up with zeros.
std::uint64_t middleOf(const unsigned char* bytes, std::size_t size) {
  if (size <= kBeginningSize) {
    return 0;
  }
  if (size >= kComparedSize) {
    return __builtin_bswap64(loadPacked<std::uint64_t>(bytes + kBeginningSize));
  }
  const auto end = loadPacked<std::uint64_t>(bytes + size - kBeginningSize);
  return __builtin_bswap64(end >> (8 * (kComparedSize - size)));
}

bool isSame(const Entry& left, const Entry& right) {
  if (left.beginning != right.beginning || left.middle != right.middle ||
      left.length != right.length) {
    return false;
  }
  const std::size_t size = byteCountOf(left.length);
  return size <= kComparedSize ||
         std::memcmp(left.bytes + kComparedSize, right.bytes + kComparedSize,
                     size - kComparedSize) == 0;
}

bool isBefore(const Entry& left, const Entry& right) {
  if (left.beginning != right.beginning) {
    return left.beginning < right.beginning;
  }
  if (left.middle != right.middle) {
    return left.middle < right.middle;
  }
  const bool isLeftNull = left.length == kNullLength;
  if (isLeftNull || right.length == kNullLength) {
    return isLeftNull && right.length != kNullLength;
  }
  const std::size_t size = std::min(left.length, right.length);
  if (size > kComparedSize) {
    const int order = std::memcmp(left.bytes + kComparedSize, right.bytes + kComparedSize,
                                  size - kComparedSize);
    if (order != 0) {
      return order < 0;
    }
  }
  return left.length < right.length;
}

}  // namespace

bool TextDictionary::fill(const TextValues& texts) {
  const std::size_t rows = texts.lengths.size();
  const std::size_t mostEntries = std::min(kMostEntries, rows / 2 + 1);
  m_slots.assign(std::bit_ceil(2 * mostEntries + 2), 0);
  m_entries.clear();
  m_codes.resize(rows);
  const unsigned char* bytes = texts.bytes.data();
  for (std::size_t row = 0; row < rows; ++row) {
    m_codes[row] = static_cast<std::uint16_t>(findOrAdd(bytes, texts.lengths[row]));
    bytes += byteCountOf(texts.lengths[row]);
    if (m_entries.size() > mostEntries ||
        (row == kTrialRows && m_entries.size() > kTrialRows * 15 / 16)) {
      return false;
    }
  }
  sort();
  return true;
}

std::uint32_t TextDictionary::findOrAdd(const unsigned char* bytes, std::uint32_t length) {
  const std::size_t size = byteCountOf(length);
  const Entry wanted{.beginning = beginningOf(bytes, size),
                     .middle = middleOf(bytes, size),
                     .bytes = bytes,
                     .length = length,
                     .code = static_cast<std::uint32_t>(m_entries.size())};
  if (m_last < m_entries.size() && isSame(m_entries[m_last], wanted)) {
    return m_last;
  }
  std::uint64_t hash = mixed(wanted.beginning ^ length, wanted.middle ^ 0x9E3779B97F4A7C15ull);
  if (size > kComparedSize) {
    hash ^= hashOfText(bytes + kComparedSize, size - kComparedSize);
  }
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    if (m_slots[slot] == 0) {
      m_entries.push_back(wanted);
      m_slots[slot] = wanted.code + 1;
      return m_last = wanted.code;
    }
    const Entry& entry = m_entries[m_slots[slot] - 1];
    if (isSame(entry, wanted)) {
      return m_last = entry.code;
    }
  }
}

void TextDictionary::sort() {
  m_keys.clear();
  for (const Entry& entry : m_entries) {
    m_keys.push_back({entry.beginning, entry.code});
  }
  std::sort(m_keys.begin(), m_keys.end(), [](const SortKey& left, const SortKey& right) {
    return left.beginning < right.beginning;
  });
  m_unordered.swap(m_entries);
  m_entries.clear();
  for (const SortKey& key : m_keys) {
    m_entries.push_back(m_unordered[key.code]);
  }
  // Those with the same beginning come in runs.
  for (auto first = m_entries.begin(); first != m_entries.end();) {
    const auto end = std::find_if(first + 1, m_entries.end(), [&](const Entry& entry) {
      return entry.beginning != first->beginning;
    });
    std::sort(first, end, isBefore);
    first = end;
  }
  m_ranks.resize(m_entries.size());
  for (std::size_t rank = 0; rank < m_entries.size(); ++rank) {
    m_ranks[m_entries[rank].code] = static_cast<std::uint16_t>(rank);
  }
  for (std::uint16_t& code : m_codes) {
    code = m_ranks[code];
  }
}

}  // namespace kelvarin
