#include "columnar/codecs/symbol_pieces.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Its hash is not that of zeros.
constexpr std::uint64_t kElsewhere = 1;

}  // namespace

SymbolPieces::SymbolPieces() : m_longer(std::size_t{1} << kHashBits), m_pairs(1 << 16) {
  for (std::size_t pair = 0; pair < m_pairs.size(); ++pair) {
    forgetPair(static_cast<std::uint16_t>(pair));
  }
  clear();
}

void SymbolPieces::clear() {
  std::fill(m_longer.begin(), m_longer.end(), Slot());
  m_longer[hashOf(0)].bytes = kElsewhere;
  for (const std::uint16_t pair : m_usedPairs) {
    forgetPair(pair);
  }
  m_usedPairs.clear();
}

bool SymbolPieces::add(const Symbol& symbol, std::uint16_t index) {
  const std::size_t size = symbol.size();
  const Piece piece{index, static_cast<std::uint16_t>(size)};
  if (size == 2) {
    const auto pair = static_cast<std::uint16_t>(symbol.low);
    m_pairs[pair] = piece;
    m_usedPairs.push_back(pair);
    return true;
  }
  Slot& slot = m_longer[hashOf(symbol.low)];
  // A longer one includes what the shorter one has proved to be frequent.
  if (slot.bytes > kElsewhere && slot.piece.size >= size) {
    return false;
  }
  slot = {symbol.low, piece};
  return true;
}

}  // namespace kelvarin
