#include "host/tables/arrow_formats/gathered_rows.h"

#include <cstring>

namespace kelvarin {

namespace {

// A buffer of texts that is so many times as large as the texts that are needed is not kept.
constexpr std::size_t kMaxUnusedRatio = 4;
constexpr std::size_t kSmallTextBuffer = 64 * 1024;

template <typename Value>
std::shared_ptr<Value[]> selected(const Value* values, const RowBatch& batch) {
  auto gathered = std::make_shared_for_overwrite<Value[]>(batch.rowCount());
  const std::uint32_t* selection = batch.selection();
  for (std::size_t row = 0; row < batch.rowCount(); ++row) {
    gathered[row] = values[selection[row]];
  }
  return gathered;
}

std::size_t bytesOfTexts(const BatchColumn& texts, std::size_t rowCount) {
  std::size_t bytes = 0;
  for (std::size_t row = 0; row < rowCount; ++row) {
    const std::uint32_t length = lengthFromBytes(texts.text(row));
    bytes += length == kNullTextLength ? 0 : length;
  }
  return bytes;
}

// What keeps texts alive: their buffer, and the positions that were selected.
struct SelectedTexts {
  std::shared_ptr<const void> buffer;
  std::shared_ptr<std::uint32_t[]> positions;
};

BatchColumn copiedTexts(const BatchColumn& texts, std::size_t rowCount, std::size_t textBytes) {
  struct Copy {
    std::unique_ptr<unsigned char[]> bytes;
    std::unique_ptr<std::uint32_t[]> positions;
  };
  const std::size_t size = textBytes + 4 * rowCount;
  auto copy = std::make_shared<Copy>();
  copy->bytes = std::make_unique_for_overwrite<unsigned char[]>(size);
  copy->positions = std::make_unique_for_overwrite<std::uint32_t[]>(rowCount);
  std::size_t position = 0;
  for (std::size_t row = 0; row < rowCount; ++row) {
    const std::size_t bytes = sizeOfValue(texts.type(), texts.text(row));
    std::memcpy(copy->bytes.get() + position, texts.text(row), bytes);
    copy->positions[row] = static_cast<std::uint32_t>(position);
    position += bytes;
  }
  const unsigned char* bytes = copy->bytes.get();
  const std::uint32_t* positions = copy->positions.get();
  return BatchColumn::ofTexts(texts.type(), std::move(copy), bytes, positions, size);
}

BatchColumn selectedTexts(const BatchColumn& texts, const RowBatch& batch) {
  auto kept = std::make_shared<SelectedTexts>();
  kept->buffer = texts.owner();
  kept->positions = selected(texts.textPositions(), batch);
  const std::uint32_t* positions = kept->positions.get();
  return BatchColumn::ofTexts(texts.type(), std::move(kept), texts.textBytes(), positions,
                              texts.textSize());
}

BatchColumn gatheredTexts(const BatchColumn& texts, const RowBatch& batch, std::size_t& textBytes) {
  const BatchColumn gathered = batch.selection() == nullptr ? texts : selectedTexts(texts, batch);
  const std::size_t bytes = bytesOfTexts(gathered, batch.rowCount());
  textBytes += bytes;
  const std::size_t needed = bytes + 4 * batch.rowCount();
  const bool isWasteful =
      texts.textSize() > kSmallTextBuffer && texts.textSize() / kMaxUnusedRatio > needed;
  return isWasteful ? copiedTexts(gathered, batch.rowCount(), bytes) : gathered;
}

BatchColumn gatheredColumn(const BatchColumn& column, const RowBatch& batch,
                           std::size_t& textBytes) {
  if (fixedSizeOf(column.type()) == 0) {
    return gatheredTexts(column, batch, textBytes);
  }
  if (batch.selection() == nullptr) {
    return column;
  }
  if (column.type() == MetaTypeColumn::number) {
    const auto numbers = selected(column.numbers(), batch);
    return BatchColumn::ofNumbers(numbers, numbers.get());
  }
  const auto keys = selected(column.keys(), batch);
  return BatchColumn::ofKeys(keys, keys.get());
}

}  // namespace

std::unique_ptr<EncodedBatch> GatheringEncoder::encode(const RowBatch& batch) const {
  auto rows = std::make_unique<GatheredRows>();
  rows->rowCount = batch.rowCount();
  rows->columns.reserve(batch.columnCount());
  for (const BatchColumn& column : batch.columns()) {
    rows->columns.push_back(gatheredColumn(column, batch, rows->textBytes));
  }
  return rows;
}

}  // namespace kelvarin
