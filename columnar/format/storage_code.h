// What a column of a columnar file is: the type its rows have, and how its values are stored.
//
// Layout: docs/gel-format.md, "Metadata block".
#pragma once

#include <cstdint>
#include <optional>

namespace kelvarin {

// The type code of a column; rows hold the values as the host's column bytes.
enum class GelType : unsigned char { number = 'F', key = 'K', text = 'U' };

// One byte of a column's metadata.
enum class StorageCode : unsigned char {
  raw = 0,            // numbers and texts: an encoding byte, then the values
  key = 1,            // integers in the order of the rows
  ascendingKey = 2,   // deltas of integers in the order of the rows
  descendingKey = 3,  // deltas of integers in the reverse order
};

// The order of columns inside a column set.
enum class ColumnKind { key, ascendingKey, descendingKey, number, other };

inline constexpr std::uint8_t kLastStorageCode = 3;

constexpr ColumnKind kindOf(GelType type, StorageCode code) {
  switch (code) {
    case StorageCode::key:
      return ColumnKind::key;
    case StorageCode::ascendingKey:
      return ColumnKind::ascendingKey;
    case StorageCode::descendingKey:
      return ColumnKind::descendingKey;
    case StorageCode::raw:
      break;
  }
  return type == GelType::number ? ColumnKind::number : ColumnKind::other;
}

// Nothing when this version does not know the code, or when type and code contradict each other.
constexpr std::optional<GelType> gelTypeFromCode(std::uint8_t code) {
  const auto type = static_cast<GelType>(code);
  const bool isKnown = type == GelType::number || type == GelType::key || type == GelType::text;
  return isKnown ? std::optional(type) : std::nullopt;
}

constexpr std::optional<StorageCode> storageFromCode(std::uint8_t code, GelType type) {
  if (code > kLastStorageCode || (code != 0) != (type == GelType::key)) {
    return std::nullopt;
  }
  return static_cast<StorageCode>(code);
}

}  // namespace kelvarin
