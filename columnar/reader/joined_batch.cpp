#include "columnar/reader/joined_batch.h"

#include <cstring>

namespace kelvarin {

namespace {

using Batches = std::span<const RowBatchPointer>;

std::shared_ptr<unsigned char[]> joinedValues(Batches batches, std::size_t column,
                                              std::size_t rows) {
  const std::size_t size = fixedSizeOf(batches.front()->column(column).type());
  auto values = std::make_shared_for_overwrite<unsigned char[]>(rows * size);
  unsigned char* to = values.get();
  for (const RowBatchPointer& batch : batches) {
    const std::size_t count = batch->rowCount() * size;
    std::memcpy(to, batch->column(column).value(0), count);
    to += count;
  }
  return values;
}

struct JoinedTexts {
  std::unique_ptr<unsigned char[]> bytes;
  std::unique_ptr<std::uint32_t[]> positions;
};

BatchColumn joinedTexts(Batches batches, std::size_t column, std::size_t rows) {
  std::size_t size = 0;
  for (const RowBatchPointer& batch : batches) {
    size += batch->column(column).textSize();
  }
  auto texts = std::make_shared<JoinedTexts>();
  texts->bytes = std::make_unique_for_overwrite<unsigned char[]>(size);
  texts->positions = std::make_unique_for_overwrite<std::uint32_t[]>(rows);
  std::uint32_t* position = texts->positions.get();
  std::uint32_t begin = 0;
  for (const RowBatchPointer& batch : batches) {
    const BatchColumn& part = batch->column(column);
    std::memcpy(texts->bytes.get() + begin, part.textBytes(), part.textSize());
    for (std::size_t row = 0; row < batch->rowCount(); ++row) {
      *position++ = begin + part.textPositions()[row];
    }
    begin += static_cast<std::uint32_t>(part.textSize());
  }
  return BatchColumn::ofTexts(batches.front()->column(column).type(), texts, texts->bytes.get(),
                              texts->positions.get(), size);
}

BatchColumn joinedColumn(Batches batches, std::size_t column, std::size_t rows) {
  switch (batches.front()->column(column).type()) {
    case MetaTypeColumn::number: {
      auto values = joinedValues(batches, column, rows);
      const auto* first = reinterpret_cast<const double*>(values.get());
      return BatchColumn::ofNumbers(std::move(values), first);
    }
    case MetaTypeColumn::key: {
      auto values = joinedValues(batches, column, rows);
      const auto* first = reinterpret_cast<const std::uint32_t*>(values.get());
      return BatchColumn::ofKeys(std::move(values), first);
    }
    default:
      return joinedTexts(batches, column, rows);
  }
}

}  // namespace

RowBatchPointer joined(Batches batches) {
  if (batches.size() == 1) {
    return batches.front();
  }
  std::size_t rows = 0;
  for (const RowBatchPointer& batch : batches) {
    rows += batch->rowCount();
  }
  std::vector<BatchColumn> columns;
  columns.reserve(batches.front()->columnCount());
  for (std::size_t i = 0; i < batches.front()->columnCount(); ++i) {
    columns.push_back(joinedColumn(batches, i, rows));
  }
  return std::make_shared<RowBatch>(rows, std::move(columns));
}

}  // namespace kelvarin
