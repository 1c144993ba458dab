#include "columnar/codecs/string_pool.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "columnar/codecs/text_hash.h"

namespace kelvarin {

namespace {

using Text = StringPool::Text;

constexpr std::size_t kPartSize = sizeof(std::uint64_t);
constexpr std::size_t kComparedSize = 2 * kPartSize;
constexpr std::size_t kMinSlots = 256;
constexpr std::size_t kSlotsPerText = 8;
// Beyond this limit, texts are not kept for the next block.
constexpr std::size_t kMaxKeptBytes = 4 << 20;

// Masks of the lowest bytes of a word.
constexpr std::uint64_t kLowBytes[kPartSize + 1] = {0,
                                                    0xFF,
                                                    0xFFFF,
                                                    0xFFFFFF,
                                                    0xFFFFFFFF,
                                                    0xFFFFFFFFFF,
                                                    0xFFFFFFFFFFFF,
                                                    0xFFFFFFFFFFFFFF,
                                                    0xFFFFFFFFFFFFFFFF};

// `end` is the end of the readable bytes.
inline Text textOf(const unsigned char* bytes, std::uint32_t length, const unsigned char* end) {
  const std::size_t size = std::min(byteCountOf(length), kComparedSize);
  const unsigned char* parts = bytes;
  unsigned char copy[kComparedSize] = {};
  if (static_cast<std::size_t>(end - bytes) < kComparedSize) [[unlikely]] {
    std::copy_n(bytes, size, copy);
    parts = copy;
  }
  const std::size_t inBeginning = std::min(size, kPartSize);
  return {.beginning = loadPacked<std::uint64_t>(parts) & kLowBytes[inBeginning],
          .middle = loadPacked<std::uint64_t>(parts + kPartSize) & kLowBytes[size - inBeginning],
          .bytes = bytes,
          .length = length,
          .block = 0};
}

inline std::uint64_t hashOf(const Text& text) {
  const std::uint64_t hash =
      mixed(text.beginning ^ text.length, text.middle ^ 0x9E3779B97F4A7C15ull);
  const std::size_t size = byteCountOf(text.length);
  return size <= kComparedSize
             ? hash
             : hash ^ hashOfText(text.bytes + kComparedSize, size - kComparedSize);
}

inline bool isSame(const Text& left, const Text& right) {
  const std::uint64_t differences = (left.beginning ^ right.beginning) |
                                    (left.middle ^ right.middle) | (left.length ^ right.length);
  if (differences != 0) {
    return false;
  }
  const std::size_t size = byteCountOf(left.length);
  return size <= kComparedSize ||
         std::memcmp(left.bytes + kComparedSize, right.bytes + kComparedSize,
                     size - kComparedSize) == 0;
}

// A number whose order is that of its bytes in memory.
std::uint64_t ordered(std::uint64_t part) {
  return __builtin_bswap64(part);
}

bool isBefore(const Text& left, const Text& right) {
  if (left.beginning != right.beginning) {
    return ordered(left.beginning) < ordered(right.beginning);
  }
  if (left.middle != right.middle) {
    return ordered(left.middle) < ordered(right.middle);
  }
  const bool isLeftNull = left.length == kNullLength;
  if (isLeftNull || right.length == kNullLength) {
    return isLeftNull && right.length != kNullLength;
  }
  const std::size_t size = std::min(left.length, right.length);
  if (size > kComparedSize) {
    const int order =
        std::memcmp(left.bytes + kComparedSize, right.bytes + kComparedSize, size - kComparedSize);
    if (order != 0) {
      return order < 0;
    }
  }
  return left.length < right.length;
}

// From now on it is one of the block's.
inline bool isNewInBlock(Text& text, std::uint32_t block) {
  return std::exchange(text.block, block) != block;
}

std::size_t freeSlot(std::span<const std::uint32_t> slots, std::uint64_t hash) {
  const std::size_t mask = slots.size() - 1;
  std::size_t slot = hash & mask;
  while (slots[slot] != 0) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

}  // namespace

void StringPool::beginBlock() {
  if (!isWorthKeeping()) {
    forget();
  }
  if (m_slots.empty()) {
    m_slots.resize(kMinSlots);
  }
  m_countOfOld = m_texts.size();
  m_countInBlock = 0;
  ++m_block;
}

// The previous block decides.
bool StringPool::isWorthKeeping() const {
  constexpr std::size_t kFewTexts = 64;
  const bool isFirst = m_countOfOld == 0;
  const bool hasComeAgain = isFirst || countOfNew() * 2 <= m_countInBlock;
  return hasComeAgain && m_texts.size() <= 2 * m_countInBlock + kFewTexts &&
         m_keptSize <= kMaxKeptBytes;
}

void StringPool::forget() {
  m_texts.clear();
  m_order.clear();
  m_kept.clear();
  m_keptSize = 0;
  m_countOfOld = 0;
  std::fill(m_slots.begin(), m_slots.end(), 0);
}

std::uint32_t StringPool::indexOf(const Text& wanted, std::uint64_t hash) {
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = hash & mask; m_slots[slot] != 0; slot = (slot + 1) & mask) {
    Text& text = m_texts[m_slots[slot] - 1];
    if (isSame(text, wanted)) {
      m_countInBlock += isNewInBlock(text, m_block);
      return m_slots[slot] - 1;
    }
  }
  return add(wanted, hash);
}

// Works in batches: first all hashes and slots, which do not wait for one another, then the texts,
// most of which are those of their first slots.
const unsigned char* StringPool::find(std::span<const std::uint32_t> lengths,
                                      const unsigned char* bytes, const unsigned char* end,
                                      std::uint32_t* indices) {
  constexpr std::size_t kBatch = 64;
  Text wanted[kBatch];
  std::uint64_t hashes[kBatch];
  std::uint32_t slots[kBatch];
  while (!lengths.empty()) {
    const std::size_t count = std::min(lengths.size(), kBatch);
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = 0; i < count; ++i) {
      wanted[i] = textOf(bytes, lengths[i], end);
      hashes[i] = hashOf(wanted[i]);
      slots[i] = m_slots[hashes[i] & mask];
      bytes += byteCountOf(lengths[i]);
    }
    const std::uint32_t block = m_block;
    std::size_t newInBlock = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (slots[i] != 0) [[likely]] {
        Text& text = m_texts[slots[i] - 1];
        if (isSame(text, wanted[i])) [[likely]] {
          newInBlock += isNewInBlock(text, block);
          indices[i] = slots[i] - 1;
          continue;
        }
      }
      indices[i] = indexOf(wanted[i], hashes[i]);
    }
    m_countInBlock += newInBlock;
    lengths = lengths.subspan(count);
    indices += count;
  }
  return bytes;
}

std::uint32_t StringPool::add(const Text& text, std::uint64_t hash) {
  const auto index = static_cast<std::uint32_t>(m_texts.size());
  m_texts.push_back(text);
  m_texts.back().block = m_block;
  ++m_countInBlock;
  if (m_slots.size() < m_texts.size() * kSlotsPerText) {
    growSlots();
  } else {
    m_slots[freeSlot(m_slots, hash)] = index + 1;
  }
  return index;
}

void StringPool::growSlots() {
  m_slots.assign(m_slots.size() * 2, 0);
  for (std::uint32_t index = 0; index < m_texts.size(); ++index) {
    m_slots[freeSlot(m_slots, hashOf(m_texts[index]))] = index + 1;
  }
}

void StringPool::endBlock() {
  if (countOfNew() == 0) {
    return;
  }
  sortNew();
  m_merged.clear();
  const auto indexOfKey = [](const SortKey& key) { return key.index; };
  if (m_order.empty()) {
    std::transform(m_newOrder.begin(), m_newOrder.end(), std::back_inserter(m_merged), indexOfKey);
  } else {
    auto next = m_newOrder.begin();
    for (const std::uint32_t old : m_order) {
      for (; next != m_newOrder.end() && isBefore(m_texts[next->index], m_texts[old]); ++next) {
        m_merged.push_back(next->index);
      }
      m_merged.push_back(old);
    }
    std::transform(next, m_newOrder.end(), std::back_inserter(m_merged), indexOfKey);
  }
  m_order.swap(m_merged);
  keepNew();
}

void StringPool::sortNew() {
  m_newOrder.clear();
  for (std::size_t i = m_countOfOld; i < m_texts.size(); ++i) {
    m_newOrder.push_back({ordered(m_texts[i].beginning), static_cast<std::uint32_t>(i)});
  }
  std::sort(m_newOrder.begin(), m_newOrder.end(), [](const SortKey& left, const SortKey& right) {
    return left.beginning < right.beginning;
  });
  // Texts with the same beginning form runs.
  for (auto first = m_newOrder.begin(); first != m_newOrder.end();) {
    const auto end = std::find_if(first + 1, m_newOrder.end(), [&](const SortKey& key) {
      return key.beginning != first->beginning;
    });
    std::sort(first, end, [this](const SortKey& left, const SortKey& right) {
      return isBefore(m_texts[left.index], m_texts[right.index]);
    });
    first = end;
  }
}

// Copies the new texts, since the block's own bytes are gone when the next block begins.
void StringPool::keepNew() {
  std::size_t size = 0;
  for (std::size_t i = m_countOfOld; i < m_texts.size(); ++i) {
    size += byteCountOf(m_texts[i].length);
  }
  m_keptSize += size;
  if (m_keptSize > kMaxKeptBytes) {
    return;
  }
  m_kept.push_back(std::make_unique_for_overwrite<unsigned char[]>(size));
  unsigned char* kept = m_kept.back().get();
  for (std::size_t i = m_countOfOld; i < m_texts.size(); ++i) {
    const unsigned char* bytes = std::exchange(m_texts[i].bytes, kept);
    kept = std::copy_n(bytes, byteCountOf(m_texts[i].length), kept);
  }
}

}  // namespace kelvarin
