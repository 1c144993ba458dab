#include "gui/preview/packed_rows.h"

#include <cstring>

namespace kelvarin {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::uint32_t kMissing = 0xFFFFFFFFu;

std::size_t packedSize(const PinRows& rows, std::size_t column) {
  const MetaTypeColumn type = rows.columns().columns[column].meta;
  if (const std::size_t fixed = fixedSizeOf(type); fixed != 0) {
    return fixed * rows.rowCount();
  }
  std::size_t size = sizeof(std::uint32_t) * rows.rowCount();
  for (std::size_t row = 0; row < rows.rowCount(); ++row) {
    if (const unsigned char* value = rows.value(row, column); value != nullptr) {
      size += sizeOfValue(type, value);
    }
  }
  return size;
}

// Both null patterns have all bits set.
void packFixed(const PinRows& rows, std::size_t column, std::size_t size, unsigned char* out) {
  for (std::size_t row = 0; row < rows.rowCount(); ++row, out += size) {
    if (const unsigned char* value = rows.value(row, column); value != nullptr) {
      std::memcpy(out, value, size);
    } else {
      std::memset(out, 0xFF, size);
    }
  }
}

void packTexts(const PinRows& rows, std::size_t column, unsigned char* out) {
  const MetaTypeColumn type = rows.columns().columns[column].meta;
  std::size_t end = sizeof(std::uint32_t) * rows.rowCount();
  for (std::size_t row = 0; row < rows.rowCount(); ++row) {
    const unsigned char* value = rows.value(row, column);
    const auto start = value == nullptr ? kMissing : static_cast<std::uint32_t>(end);
    std::memcpy(out + row * sizeof start, &start, sizeof start);
    if (value != nullptr) {
      const std::size_t size = sizeOfValue(type, value);
      std::memcpy(out + end, value, size);
      end += size;
    }
  }
}

}  // namespace

PackedRows packRows(const PinRows& rows) {
  PackedRows packed;
  std::size_t end = 0;
  for (std::size_t column = 0; column < rows.columnCount(); ++column) {
    packed.starts.push_back(end);
    end += packedSize(rows, column);
  }
  packed.starts.push_back(end);
  packed.bytes.resize(end);
  for (std::size_t column = 0; column < rows.columnCount(); ++column) {
    unsigned char* out = packed.bytes.data() + packed.starts[column];
    const std::size_t fixed = fixedSizeOf(rows.columns().columns[column].meta);
    if (fixed != 0) {
      packFixed(rows, column, fixed, out);
    } else {
      packTexts(rows, column, out);
    }
  }
  return packed;
}

const unsigned char* packedValue(MetaTypeColumn type, const unsigned char* column,
                                 std::size_t row) {
  if (const std::size_t fixed = fixedSizeOf(type); fixed != 0) {
    return column + row * fixed;
  }
  const std::uint32_t start = lengthFromBytes(column + row * sizeof(std::uint32_t));
  return start == kMissing ? nullptr : column + start;
}

}  // namespace kelvarin
