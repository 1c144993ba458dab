#include "columnar/codecs/token_spellings.h"

#include <numeric>

namespace kelvarin {

void TokenSpellings::clear() {
  m_symbols.resize(kMaxSymbols);
  std::iota(m_symbols.begin(), m_symbols.end(), std::uint16_t{0});
  m_symbols.resize(kMaxSymbols + kLongest);
}

TokenSpelling TokenSpellings::add(const Symbol& token, const SymbolPieces& pieces,
                                  std::uint16_t end) {
  const std::size_t offset = m_symbols.size() - kLongest;
  std::uint16_t* out = m_symbols.data() + offset;
  pieces.spell(token, out);
  if (token.endsText()) {
    *out++ = end;
  }
  const auto count = static_cast<std::size_t>(out - m_symbols.data()) - offset;
  m_symbols.resize(offset + count + kLongest);
  return {static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(count)};
}

}  // namespace kelvarin
