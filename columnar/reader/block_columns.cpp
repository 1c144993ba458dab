#include "columnar/reader/block_columns.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Batches stay in the processor's nearer caches, and are large enough for what is done once a
// batch.
constexpr std::uint64_t kValuesInBatch = 256 << 10;
constexpr std::uint64_t kMinRowsInBatch = 2048;
constexpr std::uint64_t kMaxRowsInBatch = 16384;
// Values that are decoded to where they stay are not looked at again, and whoever decodes a block
// of few columns alone need not wait for others.
constexpr std::uint64_t kDirectValues = 512 << 10;
constexpr std::uint64_t kMaxDirectRows = 128 << 10;

// Rounded up.
std::uint64_t quotient(std::uint64_t dividend, std::uint64_t divisor) {
  return (dividend + divisor - 1) / divisor;
}

// All batches of a block have as many rows, but for the last one.
std::uint64_t rowsInBatch(std::uint64_t rows, std::size_t columns, bool isDirect) {
  const std::uint64_t values = isDirect ? kDirectValues : kValuesInBatch;
  const std::uint64_t limit =
      std::clamp(values / std::max<std::size_t>(columns, 1), kMinRowsInBatch,
                 isDirect ? kMaxDirectRows : kMaxRowsInBatch);
  return rows <= limit ? rows : quotient(rows, quotient(rows, limit));
}

}  // namespace

std::size_t batchesOfBlock(std::uint64_t rows, std::size_t columns, bool isDirect) {
  return rows == 0 ? 1
                   : static_cast<std::size_t>(quotient(rows, rowsInBatch(rows, columns, isDirect)));
}

BlockColumns::BlockColumns(const std::vector<MetaTypeColumn>& types, std::uint64_t rows,
                           bool isDirect)
    : m_types(types),
      m_rowCount(rows),
      m_rowsInBatch(rowsInBatch(rows, types.size(), isDirect)),
      m_columns(types.size()) {}

// A forged block of a few bytes may claim any number of rows, so a single value is stored for one
// batch only.
void BlockColumns::set(std::size_t column, DecodedColumn values) {
  m_columns[column].isRepeated = isRepeated(values, m_types[column], m_rowCount);
  if (m_columns[column].isRepeated) {
    repeat(values, m_types[column], m_rowsInBatch);
  }
  m_columns[column].values = std::make_shared<const DecodedColumn>(std::move(values));
}

std::size_t BlockColumns::batchCount() const {
  return m_rowCount == 0 ? 1 : static_cast<std::size_t>(quotient(m_rowCount, m_rowsInBatch));
}

RowBatchPointer BlockColumns::batch(std::size_t index) const {
  const std::uint64_t begin = rowsBefore(index);
  const std::uint64_t rows = std::min(m_rowsInBatch, m_rowCount - begin);
  std::vector<BatchColumn> columns;
  columns.reserve(m_columns.size());
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    BatchColumn column = batchColumn(m_columns[i].values, m_types[i]);
    columns.push_back(m_columns[i].isRepeated ? std::move(column) : column.from(begin));
  }
  return std::make_shared<RowBatch>(rows, std::move(columns));
}

}  // namespace kelvarin
