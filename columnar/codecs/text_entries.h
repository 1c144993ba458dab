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
    drop();
    if (m_maxEntries > 0) {
      m_texts.codes.resize(rows);
      m_codes = m_texts.codes.data();
    }
  }

  // A text that has been stored at the offset. Returns its code.
  std::uint32_t add(std::uint32_t offset) { return m_codes == nullptr ? 0 : addToFew(offset); }
  void setRow(std::size_t row, std::uint32_t code) {
    if (m_codes != nullptr) {
      m_codes[row] = static_cast<std::uint16_t>(code);
    }
  }
  // There are not few.
  void drop() {
    m_codes = nullptr;
    m_texts.entries.clear();
    m_texts.codes.clear();
  }

 private:
  std::uint32_t addToFew(std::uint32_t offset) {
    if (m_texts.entries.size() == m_maxEntries) {
      drop();
      return 0;
    }
    m_texts.entries.push_back(offset);
    return static_cast<std::uint32_t>(m_texts.entries.size() - 1);
  }

  DecodedTexts& m_texts;
  const std::size_t m_maxEntries;
  std::uint16_t* m_codes = nullptr;  // null where they are not kept
};

}  // namespace kelvarin
