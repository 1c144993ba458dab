#include "columnar/codecs/symbol_pairs.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kelvarin {

namespace {

constexpr std::size_t kMinSlots = 1 << 10;
constexpr std::size_t kMaxSlots = 1 << 14;
// A pair that finds no slot among so many is not counted.
constexpr std::size_t kProbes = 4;
constexpr std::uint32_t kMinCount = 3;
// What a symbol takes in the table of symbols, in bits: its length there and in its code, and each
// byte that the symbol before it does not begin with.
constexpr float kBitsOfSymbol = 10;
constexpr float kBitsOfByte = 4;

bool canJoin(const Symbol& left, const Symbol& right) {
  const std::size_t max = right.endsText() ? kMaxEndingSize : kMaxSymbolSize;
  return !left.endsText() && !right.isNull() && left.size() + right.size() <= max;
}

}  // namespace

void SymbolPairs::count(std::span<const std::uint16_t> sequence, std::span<const Symbol> symbols) {
  const std::size_t slots = std::clamp(std::bit_ceil(sequence.size()), kMinSlots, kMaxSlots);
  m_counts.assign(slots, Count());
  m_symbolCounts.assign(symbols.size(), 0);
  for (const std::uint16_t symbol : sequence) {
    ++m_symbolCounts[symbol];
  }
  for (std::size_t i = 1; i < sequence.size(); ++i) {
    const std::uint32_t key = std::uint32_t{sequence[i - 1]} << 16 | sequence[i];
    const std::size_t first = (key * 0x9E3779B97F4A7C15ull) >> 40;
    for (std::size_t at = first; at < first + kProbes; ++at) {
      Count& slot = m_counts[at & (slots - 1)];
      if (slot.key == kFree || slot.key == key) {
        slot.key = key;
        ++slot.count;
        break;
      }
    }
  }
}

std::span<const SymbolPair> SymbolPairs::find(std::span<const std::uint16_t> sequence,
                                              std::span<const Symbol> symbols,
                                              std::size_t maxPairs) {
  count(sequence, symbols);
  const auto bitsOf = [&](std::uint32_t count) {
    return std::log2(static_cast<float>(sequence.size()) / static_cast<float>(count));
  };
  m_gains.clear();
  for (const Count& each : m_counts) {
    const std::uint32_t left = each.key >> 16;
    const std::uint32_t right = each.key & 0xFFFF;
    if (each.count < kMinCount || !canJoin(symbols[left], symbols[right])) {
      continue;
    }
    const float saved =
        bitsOf(m_symbolCounts[left]) + bitsOf(m_symbolCounts[right]) - bitsOf(each.count);
    const float gain = static_cast<float>(each.count) * saved - kBitsOfSymbol -
                       kBitsOfByte * static_cast<float>(symbols[right].size());
    if (gain > 0) {
      m_gains.emplace_back(-gain, each.key);
    }
  }
  const std::size_t pairs = std::min(maxPairs, m_gains.size());
  if (pairs < m_gains.size()) {
    std::nth_element(m_gains.begin(), m_gains.begin() + static_cast<std::ptrdiff_t>(pairs),
                     m_gains.end());
  }
  float bits = 0;
  for (const std::uint32_t each : m_symbolCounts) {
    bits += each == 0 ? 0 : static_cast<float>(each) * bitsOf(each);
  }
  m_saving = 0;
  m_pairs.clear();
  for (std::size_t i = 0; i < pairs; ++i) {
    const std::uint32_t key = m_gains[i].second;
    m_saving -= m_gains[i].first / bits;
    m_pairs.push_back({static_cast<std::uint16_t>(key >> 16), static_cast<std::uint16_t>(key)});
  }
  return m_pairs;
}

}  // namespace kelvarin
