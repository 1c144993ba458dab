#include "columnar/codecs/symbol_phrases.h"

#include <algorithm>

namespace kelvarin {

void SymbolPhrases::clear() {
  std::fill(m_slots.begin(), m_slots.end(), Slot());
}

bool SymbolPhrases::add(SymbolPair pair, std::uint16_t symbol) {
  const std::uint32_t hash = hashOf(pair.left, pair.right);
  Slot& slot = m_slots[hash >> kSymbolBits];
  if (slot.symbol != 0) {
    return false;
  }
  slot = {static_cast<std::uint16_t>(hash & (kSlots - 1)), symbol};
  return true;
}

std::size_t SymbolPhrases::join(std::span<std::uint16_t> sequence) {
  if (sequence.empty()) {
    return 0;
  }
  const auto maskOf = [](bool isSet) { return 0 - static_cast<std::uint32_t>(isSet); };
  const Slot* slots = m_slots.data();
  std::size_t out = 0;
  std::uint32_t isTaken = 0;  // all bits set behind a symbol that took the next one
  std::uint32_t symbol = sequence[0];
  for (std::size_t i = 0; i + 1 < sequence.size(); ++i) {
    const std::uint32_t next = sequence[i + 1];
    const std::uint32_t hash = hashOf(symbol, next);
    const Slot slot = slots[hash >> kSymbolBits];
    const std::uint32_t joined =
        slot.symbol & maskOf(slot.rest == (hash & (kSlots - 1))) & ~isTaken;
    const std::uint32_t isJoined = maskOf(joined != 0);
    sequence[out] = static_cast<std::uint16_t>(joined | (symbol & ~isJoined));
    out += isTaken + 1;  // none where all bits are set
    isTaken = isJoined;
    symbol = next;
  }
  sequence[out] = sequence.back();
  return out + (isTaken == 0 ? 1 : 0);
}

}  // namespace kelvarin
