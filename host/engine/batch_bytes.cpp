#include "host/engine/batch_bytes.h"

#include <cstring>

namespace kelvarin {

namespace {

// Columns begin at multiples of it, so that their values can be used where they are.
constexpr std::size_t kAlignment = sizeof(double);

std::size_t aligned(std::size_t size) {
  return (size + kAlignment - 1) / kAlignment * kAlignment;
}

// Returns where the memory for `size` more bytes begins.
unsigned char* grow(std::vector<unsigned char>& bytes, std::size_t size) {
  const std::size_t begin = bytes.size();
  bytes.resize(begin + aligned(size));
  return bytes.data() + begin;
}

template <typename Value>
void appendValues(const RowBatch& batch, const Value* values, std::vector<unsigned char>& bytes) {
  auto* to = reinterpret_cast<Value*>(grow(bytes, batch.rowCount() * sizeof(Value)));
  forEachRow(batch, 0, batch.rowCount(),
             [&](std::size_t row, std::size_t stored) { to[row] = values[stored]; });
}

void appendTexts(const RowBatch& batch, const BatchColumn& column,
                 std::vector<unsigned char>& bytes) {
  std::uint64_t size = 0;
  std::vector<std::uint32_t> positions(batch.rowCount());
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    positions[row] = static_cast<std::uint32_t>(size);
    size += sizeOfValue(column.type(), column.text(stored));
  });
  std::memcpy(grow(bytes, sizeof size), &size, sizeof size);
  const std::size_t positionsSize = positions.size() * sizeof(std::uint32_t);
  if (positionsSize > 0) {
    std::memcpy(grow(bytes, positionsSize), positions.data(), positionsSize);
  }
  unsigned char* to = grow(bytes, size);
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const unsigned char* text = column.text(stored);
    const std::size_t textSize = sizeOfValue(column.type(), text);
    std::memcpy(to, text, textSize);
    to += textSize;
  });
}

}  // namespace

std::vector<MetaTypeColumn> typesOf(const RowBatch& batch) {
  std::vector<MetaTypeColumn> types;
  types.reserve(batch.columnCount());
  for (const BatchColumn& column : batch.columns()) {
    types.push_back(column.type());
  }
  return types;
}

void appendBytes(const RowBatch& batch, std::vector<unsigned char>& bytes) {
  for (const BatchColumn& column : batch.columns()) {
    switch (column.type()) {
      case MetaTypeColumn::number:
        appendValues(batch, column.numbers(), bytes);
        break;
      case MetaTypeColumn::key:
        appendValues(batch, column.keys(), bytes);
        break;
      default:
        appendTexts(batch, column, bytes);
    }
  }
}

RowBatchPointer batchFromBytes(const std::vector<MetaTypeColumn>& types, std::size_t rowCount,
                               std::shared_ptr<unsigned char[]> bytes) {
  const unsigned char* next = bytes.get();
  std::vector<BatchColumn> columns;
  columns.reserve(types.size());
  for (const MetaTypeColumn type : types) {
    const std::size_t fixed = fixedSizeOf(type);
    if (fixed != 0) {
      columns.push_back(
          type == MetaTypeColumn::number
              ? BatchColumn::ofNumbers(bytes, reinterpret_cast<const double*>(next))
              : BatchColumn::ofKeys(bytes, reinterpret_cast<const std::uint32_t*>(next)));
      next += aligned(rowCount * fixed);
      continue;
    }
    std::uint64_t size = 0;
    std::memcpy(&size, next, sizeof size);
    const auto* positions = reinterpret_cast<const std::uint32_t*>(next + sizeof size);
    const unsigned char* texts = next + sizeof size + aligned(rowCount * sizeof(std::uint32_t));
    columns.push_back(BatchColumn::ofTexts(type, bytes, texts, positions, size));
    next = texts + aligned(size);
  }
  return std::make_shared<RowBatch>(rowCount, std::move(columns));
}

}  // namespace kelvarin
