#include "columnar/codecs/symbol_phrases.h"

#include <algorithm>

namespace kelvarin {

void SymbolPhrases::clear() {
  std::fill(m_slots.begin(), m_slots.end(), Slot());
}

bool SymbolPhrases::add(SymbolPair pair, std::uint16_t symbol) {
  const std::uint32_t hash = hashOf(pair.left, pair.right);
  Slot& slot = m_slots[hash >> kSymbolBits];
  if (slot.rest != kFree) {
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
    // Only the last two operations wait for what became of the symbol before.
    const std::uint32_t isPair = maskOf(slot.rest == (hash & (kSlots - 1)));
    const std::uint32_t isJoined = isPair & ~isTaken;
    sequence[out] = static_cast<std::uint16_t>(symbol ^ ((symbol ^ slot.symbol) & isJoined));
    out += isTaken + 1;  // none where all bits are set
    isTaken = isJoined;
    symbol = next;
  }
  sequence[out] = sequence.back();
  return out + (isTaken == 0 ? 1 : 0);
}

}  // namespace kelvarin
