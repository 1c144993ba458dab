#include "expression/functions/utf8_units.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace kelvarin {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080ull;

constexpr std::size_t kAllUnits = std::numeric_limits<std::size_t>::max();

template <typename Word>
Word wordAt(const char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Of less than 8 bytes.
bool hasNoHighBit(const char* bytes, std::size_t size) {
  if (size >= sizeof(std::uint32_t)) {
    const std::uint32_t all =
        wordAt<std::uint32_t>(bytes) | wordAt<std::uint32_t>(bytes + size - sizeof(std::uint32_t));
    return (all & kHighBits) == 0;
  }
  const int all = size == 0 ? 0 : bytes[0] | bytes[size / 2] | bytes[size - 1];
  return (all & 0x80) == 0;
}

bool hasByteOrderMark(std::string_view text) {
  return text.starts_with("\xEF\xBB\xBF");
}

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

// The bytes of the character at the index, 2 to 4; 0 where it is none. It is not ASCII.
std::size_t sizeOfCharacter(std::string_view text, std::size_t index) {
  const std::uint8_t lead = byteAt(text, index);
  const std::size_t size = lead < 0xC2   ? 0
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 0;
  if (size == 0 || text.size() - index < size) {
    return 0;
  }
  // Leaves out longer spellings than needed, halves of pairs, and what is beyond Unicode.
  const std::uint8_t second = byteAt(text, index + 1);
  const std::uint8_t first = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const std::uint8_t last = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (second < first || second > last) {
    return 0;
  }
  for (std::size_t i = 2; i < size; ++i) {
    if ((byteAt(text, index + i) & 0xC0) != 0x80) {
      return 0;
    }
  }
  return size;
}

// Moves the index over so many units, or to the end; `units` becomes what is left of them. False at
// what is left to QString.
bool advance(std::string_view text, std::size_t& index, std::size_t& units) {
  while (units > 0 && index < text.size()) {
    if (byteAt(text, index) < 0x80) {
      ++index;
      --units;
      continue;
    }
    const std::size_t size = sizeOfCharacter(text, index);
    const std::size_t ofCharacter = size == 4 ? 2 : 1;
    if (size == 0 || ofCharacter > units) {
      return false;
    }
    index += size;
    units -= ofCharacter;
  }
  return true;
}

}  // namespace

bool isAscii(std::string_view text) {
  const char* bytes = text.data();
  const std::size_t size = text.size();
  if (size < sizeof(std::uint64_t)) {
    return hasNoHighBit(bytes, size);
  }
  // The last word overlaps the one before.
  std::uint64_t all = wordAt<std::uint64_t>(bytes + size - sizeof all);
  for (std::size_t i = 0; i + sizeof all <= size; i += sizeof all) {
    all |= wordAt<std::uint64_t>(bytes + i);
  }
  return (all & kHighBits) == 0;
}

std::size_t sizeOfCharacterAt(std::string_view text, std::size_t index) {
  const std::size_t size = byteAt(text, index) < 0x80 ? 1 : sizeOfCharacter(text, index);
  return std::max<std::size_t>(size, 1);
}

std::size_t sizeOfValidPart(std::string_view text) {
  std::size_t index = 0;
  std::size_t units = kAllUnits;
  advance(text, index, units);
  return index;
}

std::optional<std::size_t> unitCount(std::string_view text) {
  if (isAscii(text)) {
    return text.size();
  }
  std::size_t index = 0;
  std::size_t units = kAllUnits;
  if (hasByteOrderMark(text) || !advance(text, index, units)) {
    return std::nullopt;
  }
  return kAllUnits - units;
}

std::optional<std::string_view> partOfUnits(std::string_view text, std::size_t from,
                                            std::size_t count) {
  const std::size_t begin = std::min(from, text.size());
  const std::size_t end = begin + std::min(count, text.size() - begin);
  if (isAscii(text.substr(0, end))) {
    return text.substr(begin, end - begin);
  }
  std::size_t index = 0;
  if (hasByteOrderMark(text) || !advance(text, index, from)) {
    return std::nullopt;
  }
  const std::size_t first = index;
  if (!advance(text, index, count)) {
    return std::nullopt;
  }
  return text.substr(first, index - first);
}

}  // namespace kelvarin
