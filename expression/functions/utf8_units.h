// Positions in UTF-8 texts, counted in the 16-bit units of UTF-16 as users see them.
//
// Only for what has the same meaning in both encodings. Bytes that are no UTF-8, a byte order mark
// at the beginning and positions inside a pair of units are left to QString.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include <QString>

namespace kelvarin {

bool isAscii(std::string_view text);

// The bytes of the character that begins at the index; 1 where none does.
std::size_t sizeOfCharacterAt(std::string_view text, std::size_t index);
// Of the bytes before the first that are no UTF-8.
std::size_t sizeOfValidPart(std::string_view text);

// Two bytes at most; returns their end.
inline char* appendLatin1(char* out, unsigned char character) {
  constexpr unsigned kAsciiEnd = 0x80;
  if (character < kAsciiEnd) {
    *out++ = static_cast<char>(character);
    return out;
  }
  *out++ = static_cast<char>(0xC0 | character >> 6);
  *out++ = static_cast<char>(0x80 | (character & 0x3F));
  return out;
}

// The number of units; nothing for what is left to QString.
std::optional<std::size_t> unitCount(std::string_view text);
// `count` units from the unit `from` on, as far as there are so many.
std::optional<std::string_view> partOfUnits(std::string_view text, std::size_t from,
                                            std::size_t count);

inline QString qstringOf(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace kelvarin
