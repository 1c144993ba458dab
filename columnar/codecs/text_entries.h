// Notes while texts are decoded which of them each row has, as long as there are few.
//
// Used by the decoder of shaped texts, which stores what repeats once.
#pragma once

#include <cstdint>

#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

class TextEntries {
 public:
  TextEntries(DecodedTexts& texts, std::size_t rows, bool isWorthwhile)
      : m_texts(texts), m_maxEntries(isWorthwhile ? DecodedTexts::maxEntries(rows) : 0) {
    m_texts.entries.clear();
    m_texts.codes.resize(m_maxEntries > 0 ? rows : 0);
  }

  // A text that has been stored at the offset. Returns its code.
  std::uint32_t add(std::uint32_t offset) { return m_texts.codes.empty() ? 0 : addToFew(offset); }
  void setRow(std::size_t row, std::uint32_t code) {
    if (!m_texts.codes.empty()) {
      m_texts.codes[row] = static_cast<std::uint16_t>(code);
    }
  }

 private:
  std::uint32_t addToFew(std::uint32_t offset) {
    if (m_texts.entries.size() == m_maxEntries) {
      m_texts.entries.clear();
      m_texts.codes.clear();
      return 0;
    }
    m_texts.entries.push_back(offset);
    return static_cast<std::uint32_t>(m_texts.entries.size() - 1);
  }

  DecodedTexts& m_texts;
  const std::size_t m_maxEntries;
};

}  // namespace kelvarin
