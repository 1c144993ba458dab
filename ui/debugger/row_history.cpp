#include "ui/debugger/row_history.h"

namespace kelvarin {

namespace {

std::size_t bytesOf(const std::vector<ExpressionValue>& values) {
  std::size_t bytes = values.size() * sizeof(ExpressionValue);
  for (const ExpressionValue& value : values) {
    bytes += static_cast<std::size_t>(value.text.size()) * sizeof(QChar);
  }
  return bytes;
}

std::size_t bytesOf(const DebuggedRow& row) {
  return sizeof(DebuggedRow) + bytesOf(row.row.variables) + bytesOf(row.row.results);
}

}  // namespace

void RowHistory::add(std::shared_ptr<const DebuggedRow> row) {
  m_bytes += bytesOf(*row);
  m_rows.push_back(std::move(row));
  while (m_rows.size() > kMaxRows || (m_bytes > kMaxBytes && m_rows.size() > 1)) {
    m_bytes -= bytesOf(*m_rows.front());
    m_rows.pop_front();
  }
}

void RowHistory::clear() {
  m_rows.clear();
  m_bytes = 0;
}

}  // namespace kelvarin
