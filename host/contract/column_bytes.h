// The bytes of one value in a row, by column type:
//   number  8-byte double, missing when all bits are set
//   key     4-byte unsigned integer; 0xFFFFFFFF and 0xFFFFFFFE are missing
//   text    4-byte byte count, then UTF-8; the count 0xFFFFFFFF is the null text, distinct from the
//   empty one
// Integers are little-endian, values unaligned. A null pointer in a row is a missing value of any
// type.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/null_number.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

inline constexpr std::uint32_t kNullKey = 0xFFFFFFFFu;
inline constexpr std::uint32_t kFirstNullKey = 0xFFFFFFFEu;
inline constexpr std::uint32_t kNullTextLength = 0xFFFFFFFFu;

constexpr bool isNullKey(std::uint32_t key) {
  return key >= kFirstNullKey;
}

inline std::uint32_t lengthFromBytes(const unsigned char* bytes) {
  std::uint32_t length;
  std::memcpy(&length, bytes, sizeof length);
  return length;
}

inline double numberFromBytes(const unsigned char* bytes) {
  if (bytes == nullptr) {
    return kNullNumber;
  }
  double number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

inline std::uint32_t keyFromBytes(const unsigned char* bytes) {
  return bytes == nullptr ? kNullKey : lengthFromBytes(bytes);
}

inline bool isNullText(const unsigned char* bytes) {
  return bytes == nullptr || lengthFromBytes(bytes) == kNullTextLength;
}

// The UTF-8 bytes of a text; empty for the null text. The view lives as long as the row's bytes.
inline std::string_view textFromBytes(const unsigned char* bytes) {
  if (isNullText(bytes)) {
    return {};
  }
  return {reinterpret_cast<const char*>(bytes) + 4, lengthFromBytes(bytes)};
}

// Of every value of the type; 0 where each has its own size.
constexpr std::size_t fixedSizeOf(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return sizeof(double);
    case MetaTypeColumn::key:
      return sizeof(std::uint32_t);
    default:
      return 0;
  }
}

// The size of a value whose pointer is not null.
inline std::size_t sizeOfValue(MetaTypeColumn type, const unsigned char* bytes) {
  const std::size_t fixed = fixedSizeOf(type);
  return fixed != 0 ? fixed : 4 + textFromBytes(bytes).size();
}

}  // namespace kelvarin
