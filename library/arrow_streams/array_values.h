// The values of an Arrow array one by one, straight from its buffers.
//
// Buffers of other libraries need not be aligned, so values are read by copies of their bytes.
// Used by: imported_batch.cpp, imported_numbers.cpp, imported_texts.cpp, untouched_numbers.cpp.
// Threads: any.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "library/arrow_streams/arrow_type.h"

namespace kelvarin {

inline bool isAligned(const void* address, std::size_t size) {
  return reinterpret_cast<std::uintptr_t>(address) % size == 0;
}

// Some rows of an array, which are numbered from 0.
struct ArraySlice {
  const ArrowArray& array;
  std::int64_t first = 0;  // in the buffers, the array's own offset included
  std::int64_t count = 0;

  template <typename Value>
  Value at(std::int64_t row) const {
    Value value;
    std::memcpy(&value, bytesAt(row, sizeof value), sizeof value);
    return value;
  }
  const unsigned char* bytesAt(std::int64_t row, std::size_t width) const {
    return static_cast<const unsigned char*>(array.buffers[1]) +
           static_cast<std::size_t>(first + row) * width;
  }
  bool bitAt(std::int64_t row) const { return isSet(array.buffers[1], first + row); }
  bool mayHaveNulls() const { return array.null_count != 0 && array.buffers[0] != nullptr; }
  bool isNull(std::int64_t row) const {
    return mayHaveNulls() && !isSet(array.buffers[0], first + row);
  }

 private:
  static bool isSet(const void* bits, std::int64_t index) {
    return (static_cast<const unsigned char*>(bits)[index / 8] >> (index % 8) & 1) != 0;
  }
};

// The values that rows stand for: their own, or those of a dictionary at their codes.
struct ArrayRows {
  ArraySlice rows;
  ArraySlice values;  // the same where there is no dictionary
  ArrowKind codeKind = ArrowKind::unsupported;

  bool isDictionary() const { return codeKind != ArrowKind::unsupported; }
  bool isPlain() const { return !isDictionary() && !rows.mayHaveNulls(); }
  std::int64_t codeAt(std::int64_t row) const;
  std::int64_t positionOf(std::int64_t row) const { return isDictionary() ? codeAt(row) : row; }
  bool isMissing(std::int64_t row) const {
    return rows.isNull(row) || (isDictionary() && values.isNull(codeAt(row)));
  }
};

inline std::int64_t ArrayRows::codeAt(std::int64_t row) const {
  switch (codeKind) {
    case ArrowKind::int8:
      return rows.at<std::int8_t>(row);
    case ArrowKind::int16:
      return rows.at<std::int16_t>(row);
    case ArrowKind::int32:
      return rows.at<std::int32_t>(row);
    case ArrowKind::uint8:
      return rows.at<std::uint8_t>(row);
    case ArrowKind::uint16:
      return rows.at<std::uint16_t>(row);
    case ArrowKind::uint32:
      return rows.at<std::uint32_t>(row);
    default:
      return rows.at<std::int64_t>(row);
  }
}

// Calls visit(Integer()) with the type of the kind's values; nothing for other kinds.
template <typename Visit>
auto withIntegerOf(ArrowKind kind, Visit visit) {
  switch (kind) {
    case ArrowKind::int8:
      return visit(std::int8_t());
    case ArrowKind::int16:
      return visit(std::int16_t());
    case ArrowKind::int32:
      return visit(std::int32_t());
    case ArrowKind::uint8:
      return visit(std::uint8_t());
    case ArrowKind::uint16:
      return visit(std::uint16_t());
    case ArrowKind::uint32:
      return visit(std::uint32_t());
    case ArrowKind::uint64:
      return visit(std::uint64_t());
    default:
      return visit(std::int64_t());
  }
}

// A decimal as plain text, all digits and no exponent: "-123.450" of three decimals.
std::string decimalText(const unsigned char* bytes, int bits, int scale);

}  // namespace kelvarin
