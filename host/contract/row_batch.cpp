#include "host/contract/row_batch.h"

#include <algorithm>

namespace kelvarin {

RowBatch::RowBatch(std::size_t storedRows, std::vector<BatchColumn> columns)
    : RowBatch(storedRows, std::move(columns), nullptr, storedRows) {}

RowBatch::RowBatch(std::size_t storedRows, std::vector<BatchColumn> columns, RowSelection selection,
                   std::size_t rowCount)
    : m_storedRows(storedRows),
      m_columns(std::move(columns)),
      m_selection(std::move(selection)),
      m_rowCount(rowCount) {}

RowBatchPointer RowBatch::slice(std::size_t begin, std::size_t end) const {
  if (m_selection != nullptr) {
    RowSelection part(m_selection, m_selection.get() + begin);
    return std::make_shared<RowBatch>(m_storedRows, m_columns, std::move(part), end - begin);
  }
  std::vector<BatchColumn> columns;
  columns.reserve(m_columns.size());
  for (const BatchColumn& column : m_columns) {
    columns.push_back(column.from(begin));
  }
  return std::make_shared<RowBatch>(end - begin, std::move(columns));
}

RowBatchPointer RowBatch::narrowSlice(std::size_t begin, std::size_t end) const {
  if (m_selection == nullptr || begin == end) {
    return slice(begin, end);
  }
  const std::size_t firstStored = storedRow(begin);
  std::vector<BatchColumn> columns;
  columns.reserve(m_columns.size());
  for (const BatchColumn& column : m_columns) {
    columns.push_back(column.from(firstStored));
  }
  auto selection = std::make_shared_for_overwrite<std::uint32_t[]>(end - begin);
  std::transform(
      m_selection.get() + begin, m_selection.get() + end, selection.get(),
      [firstStored](std::uint32_t row) { return row - static_cast<std::uint32_t>(firstStored); });
  const std::size_t storedRows = storedRow(end - 1) + 1 - firstStored;
  return std::make_shared<RowBatch>(storedRows, std::move(columns), std::move(selection),
                                    end - begin);
}

std::size_t RowBatch::byteCount() const {
  std::size_t bytes = 0;
  for (const BatchColumn& column : m_columns) {
    const std::size_t fixed = fixedSizeOf(column.type());
    bytes += fixed != 0 ? fixed * m_storedRows
                        : column.textSize() + sizeof(std::uint32_t) * m_storedRows;
    if (const BatchDictionary& dictionary = column.dictionary(); dictionary.isThere()) {
      bytes += sizeof(std::uint16_t) * m_storedRows + dictionary.positions.size_bytes();
    }
  }
  return bytes;
}

}  // namespace kelvarin
