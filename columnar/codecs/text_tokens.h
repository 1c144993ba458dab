// Cuts texts into tokens: words, with the blank before them; runs of digits, of blanks and of other
// characters. Names are cut into words: before a capital letter, and behind an underscore.
//
// Words come back, so they make good symbols. Bytes beyond ASCII count as letters.
// Used by SymbolCutter.
#pragma once

#include <vector>

#include "columnar/codecs/symbol.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextTokens {
 public:
  // The texts outlive the use of their tokens.
  void cut(const TextValues& texts);

  // Calls use(token) for all tokens; the last one of each text ends it.
  template <typename Use>
  void forEach(Use use) const {
    const unsigned char* text = m_texts.bytes.data();
    const std::uint32_t* next = m_positions.data() + 1;
    std::size_t at = 0;
    for (const std::uint32_t length : m_texts.lengths) {
      if (byteCountOf(length) == 0) {
        use(length == kNullLength ? Symbol::null() : Symbol::end());
        continue;
      }
      const std::size_t end = at + length;
      std::size_t size = sizeAt(at, next);
      for (; at + size < end; size = sizeAt(at, next)) {
        use(tokenAt(text + at, size, 0));
        at += size;
      }
      const bool isEnd = size <= kMaxEndingSize && isOther(text[at]);
      use(tokenAt(text + at, size, isEnd ? Symbol::kEnds : 0));
      if (!isEnd) {
        use(Symbol::end());
      }
      at = end;
    }
  }

 private:
  // From the index 16 - n on, the first n of 16 bytes are ones.
  static constexpr unsigned char kOnesAndZeros[2 * sizeof(Symbol)] = {
      0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
      0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

  static constexpr bool isOther(unsigned char byte) {
    const bool isLetter = static_cast<unsigned char>((byte | 0x20) - 'a') < 26 || byte >= 0x80;
    const bool isDigit = static_cast<unsigned char>(byte - '0') < 10;
    return !isLetter && !isDigit && byte != '_' && byte != ' ';
  }
  void setBegin(std::size_t offset) { m_begins[offset / 64] |= std::uint64_t{1} << offset % 64; }
  // The size of the token at an offset, the next one being at `next`, which moves on. Longer ones
  // are several.
  static std::size_t sizeAt(std::size_t offset, const std::uint32_t*& next) {
    const std::size_t size = *next - offset;
    if (size > kMaxSymbolSize) [[unlikely]] {
      return kMaxSymbolSize;
    }
    ++next;
    return size;
  }
  void findPositions();
  Symbol tokenAt(const unsigned char* bytes, std::size_t size, std::uint64_t flags) const {
    unsigned char copy[sizeof(Symbol)] = {};
    if (static_cast<std::size_t>(m_end - bytes) < sizeof copy) [[unlikely]] {
      std::memcpy(copy, bytes, size);
      bytes = copy;
    }
    const unsigned char* mask = kOnesAndZeros + sizeof(Symbol) - size;
    return {loadPacked<std::uint64_t>(bytes) & loadPacked<std::uint64_t>(mask),
            (loadPacked<std::uint64_t>(bytes + 8) & loadPacked<std::uint64_t>(mask + 8)) |
                std::uint64_t{size} << Symbol::kSizeShift | flags};
  }

  TextValues m_texts;
  const unsigned char* m_end = nullptr;
  // A bit for each byte: a token begins there, or the first text behind the last one.
  std::vector<std::uint64_t> m_begins;
  std::vector<std::uint32_t> m_positions;  // of these bits
};

}  // namespace kelvarin
