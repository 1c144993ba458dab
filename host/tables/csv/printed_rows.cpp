#include "host/tables/csv/printed_rows.h"

#include <algorithm>

#include "base/shortest_number.h"

namespace kelvarin {

namespace {

// Printed numbers that stay in the processor's cache until they are copied.
constexpr std::size_t kTextsAtOnce = 1024;

void printKey(std::uint32_t key, NumberText& text) {
  text.begin = 0;
  text.size = 0;
  if (!isNullKey(key)) {
    text.size = static_cast<std::uint8_t>(appendWhole(text.bytes, key) - text.bytes);
  }
}

}  // namespace

PrintedRows::PrintedRows(const RowBatch& batch) : m_batch(batch) {
  const auto isPrinted = [](const BatchColumn& column) { return fixedSizeOf(column.type()) != 0; };
  const auto columnCount = static_cast<std::size_t>(
      std::count_if(batch.columns().begin(), batch.columns().end(), isPrinted));
  m_rowsAtOnce = std::clamp<std::size_t>(kTextsAtOnce / std::max<std::size_t>(columnCount, 1), 1,
                                         kNumbersPrinted);
  m_texts = std::make_unique_for_overwrite<NumberText[]>(columnCount * m_rowsAtOnce);
  m_columns.reserve(batch.columnCount());
  NumberText* next = m_texts.get();
  for (const BatchColumn& column : batch.columns()) {
    m_columns.push_back(isPrinted(column) ? next : nullptr);
    next += isPrinted(column) ? m_rowsAtOnce : 0;
  }
}

bool PrintedRows::next() {
  m_begin = m_end;
  m_end = std::min(m_batch.rowCount(), m_begin + m_rowsAtOnce);
  for (std::size_t row = m_begin; row < m_end; ++row) {
    m_storedRows[row - m_begin] = static_cast<std::uint32_t>(m_batch.storedRow(row));
  }
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (m_columns[i] != nullptr) {
      print(m_batch.column(i), m_columns[i]);
    }
  }
  return m_begin < m_end;
}

void PrintedRows::print(const BatchColumn& column, NumberText* texts) {
  const std::size_t count = m_end - m_begin;
  if (column.type() == MetaTypeColumn::key) {
    for (std::size_t i = 0; i < count; ++i) {
      printKey(column.keys()[m_storedRows[i]], texts[i]);
    }
    return;
  }
  double numbers[kNumbersPrinted];
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = column.numbers()[m_storedRows[i]];
  }
  printNumbers(numbers, count, texts);
}

}  // namespace kelvarin
