#include "columnar/codecs/token_table.h"

#include <algorithm>
#include <bit>

namespace kelvarin {

namespace {

constexpr std::size_t kMinSlots = 1 << 8;
constexpr std::size_t kMaxFirstSlots = 1 << 15;

}  // namespace

void TokenTable::clear(std::size_t expected) {
  // There were as many last time, if these are texts of the same kind.
  const std::size_t likely = std::max(expected, std::min(2 * expected, m_entries.size()));
  const std::size_t slots = std::clamp(std::bit_ceil(2 * likely), kMinSlots, kMaxFirstSlots);
  m_entries.clear();
  m_slots.assign(slots, 0);
  m_mask = slots - 1;
}

std::uint32_t TokenTable::add(const Symbol& token) {
  if (2 * m_entries.size() >= m_slots.size()) {
    m_slots.assign(2 * m_slots.size(), 0);
    m_mask = m_slots.size() - 1;
    for (std::uint32_t i = 0; i < m_entries.size(); ++i) {
      slotOf(m_entries[i].token) = i + 1;
    }
  }
  m_entries.push_back({token, 1, kNoSymbol});
  const auto index = static_cast<std::uint32_t>(m_entries.size() - 1);
  slotOf(token) = index + 1;
  return index;
}

}  // namespace kelvarin
