#include "host/tables/arrow_formats/row_group.h"

#include <algorithm>

namespace kelvarin {

namespace {

std::size_t textBytesOfRow(const GatheredRows& rows, std::size_t row) {
  std::size_t bytes = 0;
  for (const BatchColumn& column : rows.columns) {
    if (fixedSizeOf(column.type()) == 0) {
      bytes += textFromBytes(column.text(row)).size();
    }
  }
  return bytes;
}

}  // namespace

RowGroup::RowGroup(const std::vector<MetaTypeColumn>& types) {
  for (const MetaTypeColumn type : types) {
    m_columns.push_back({type, {}});
  }
}

std::size_t RowGroup::append(const GatheredRows& rows, std::size_t begin) {
  const std::size_t count = rowsThatFit(rows, begin);
  if (count == 0) {
    return 0;
  }
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    m_columns[i].pieces.push_back({rows.columns[i].from(begin), count});
  }
  m_rowCount += count;
  return count;
}

// Counts the texts of the rows that fit.
std::size_t RowGroup::rowsThatFit(const GatheredRows& rows, std::size_t begin) {
  const std::size_t count = std::min(rows.rowCount - begin, kMaxRows - m_rowCount);
  if (begin == 0 && count == rows.rowCount && m_textBytes + rows.textBytes < kMaxTextBytes) {
    m_textBytes += rows.textBytes;
    return count;
  }
  std::size_t fitting = 0;
  while (fitting < count && m_textBytes < kMaxTextBytes) {
    m_textBytes += textBytesOfRow(rows, begin + fitting++);
  }
  return fitting;
}

}  // namespace kelvarin
