#include "host/tables/arrow_formats/gathered_rows.h"

#include <cstring>

#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

namespace {

// A buffer of texts that is so many times as large as the texts that are needed is not kept.
constexpr std::size_t kMaxUnusedRatio = 4;
constexpr std::size_t kSmallTextBuffer = 64 * 1024;

template <typename Value>
ColumnMemory<Value> selected(const Value* values, const RowBatch& batch) {
  const ColumnMemory<Value> gathered(batch.rowCount());
  const std::uint32_t* selection = batch.selection();
  for (std::size_t row = 0; row < batch.rowCount(); ++row) {
    gathered.values[row] = values[selection[row]];
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

// What keeps texts alive.
struct TextOwner {
  std::shared_ptr<const void> texts;
  std::shared_ptr<const void> positions;
};

BatchColumn textsAt(const BatchColumn& like, const ColumnMemory<std::uint32_t>& positions,
                    std::shared_ptr<const void> owner, const unsigned char* bytes,
                    std::size_t size) {
  auto owners = std::make_shared<TextOwner>(TextOwner{std::move(owner), positions.owner});
  return BatchColumn::ofTexts(like.type(), std::move(owners), bytes, positions.values, size);
}

BatchColumn copiedTexts(const BatchColumn& texts, std::size_t rowCount, std::size_t size) {
  const ColumnMemory<unsigned char> copy(size);
  const ColumnMemory<std::uint32_t> positions(rowCount);
  std::size_t position = 0;
  for (std::size_t row = 0; row < rowCount; ++row) {
    const std::size_t bytes = sizeOfValue(texts.type(), texts.text(row));
    std::memcpy(copy.values + position, texts.text(row), bytes);
    positions.values[row] = static_cast<std::uint32_t>(position);
    position += bytes;
  }
  return textsAt(texts, positions, copy.owner, copy.values, size);
}

BatchColumn selectedTexts(const BatchColumn& texts, const RowBatch& batch) {
  return textsAt(texts, selected(texts.textPositions(), batch), texts.owner(), texts.textBytes(),
                 texts.textSize());
}

BatchColumn gatheredTexts(const BatchColumn& texts, const RowBatch& batch, std::size_t& textBytes) {
  const BatchColumn gathered = batch.selection() == nullptr ? texts : selectedTexts(texts, batch);
  const std::size_t bytes = bytesOfTexts(gathered, batch.rowCount());
  textBytes += bytes;
  const std::size_t needed = bytes + 4 * batch.rowCount();
  const bool isWasteful =
      texts.textSize() > kSmallTextBuffer && texts.textSize() / kMaxUnusedRatio > needed;
  return isWasteful ? copiedTexts(gathered, batch.rowCount(), needed) : gathered;
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
    return BatchColumn::ofNumbers(numbers.owner, numbers.values);
  }
  const auto keys = selected(column.keys(), batch);
  return BatchColumn::ofKeys(keys.owner, keys.values);
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
