#include "columnar/codecs/token_table.h"

#include <algorithm>
#include <bit>

namespace kelvarin {

namespace {

constexpr std::size_t kMinSlots = 1 << 8;
constexpr std::size_t kSlotsPerToken = 8;
constexpr std::size_t kMaxFirstSlots = 1 << 15;

}  // namespace

void TokenTable::clear(std::size_t expected) {
  const std::size_t slots =
      std::clamp(std::bit_ceil(kSlotsPerToken * expected), kMinSlots, kMaxFirstSlots);
  m_entries.clear();
  fillSlots(slots);
}

void TokenTable::fillSlots(std::size_t slots) {
  m_slots.assign(slots, 0);
  m_mask = slots - 1;
  for (std::uint32_t i = 0; i < m_entries.size(); ++i) {
    slotOf(m_entries[i].token) = i + 1;
  }
}

void TokenTable::keepTrained() {
  std::erase_if(m_entries, [](const Entry& entry) { return entry.trainedSymbol == kNoSymbol; });
  for (Entry& entry : m_entries) {
    entry.spelling = {};
  }
  fillSlots(m_slots.size());
}

void TokenTable::beginTexts() {
  for (Entry& entry : m_entries) {
    entry.count = 0;
    entry.symbol = kNoSymbol;
  }
}

// First all slots, which do not wait for one another, then the tokens, most of which are those of
// their first slots.
void TokenTable::count(std::span<const Symbol> batch, std::uint32_t* indices) {
  std::uint32_t slots[kBatch];
  for (std::size_t i = 0; i < batch.size(); ++i) {
    slots[i] = m_slots[batch[i].hash() & m_mask];
  }
  for (std::size_t i = 0; i < batch.size(); ++i) {
    const std::uint32_t index = slots[i] - 1;
    if (slots[i] != 0 && m_entries[index].token == batch[i]) [[likely]] {
      ++m_entries[index].count;
      indices[i] = index;
    } else {
      indices[i] = count(batch[i]);
    }
  }
}

std::uint32_t TokenTable::count(const Symbol& token) {
  const std::uint32_t slot = slotOf(token);
  if (slot == 0) {
    return add(token);
  }
  ++m_entries[slot - 1].count;
  return slot - 1;
}

std::uint32_t TokenTable::add(const Symbol& token) {
  if (kSlotsPerToken * m_entries.size() >= m_slots.size()) {
    fillSlots(2 * m_slots.size());
  }
  Entry& entry = m_entries.emplace_back();
  entry.token = token;
  entry.count = 1;
  const auto index = static_cast<std::uint32_t>(m_entries.size() - 1);
  slotOf(token) = index + 1;
  return index;
}

}  // namespace kelvarin
