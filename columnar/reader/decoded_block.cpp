#include "columnar/reader/decoded_block.h"

namespace kelvarin {

void DecodedBlock::setColumns(const std::vector<MetaTypeColumn>& types) {
  m_columns.clear();
  m_cursors.assign(types.size(), Cursor{});
  m_sizes.clear();
  for (const MetaTypeColumn type : types) {
    m_sizes.push_back(fixedSizeOf(type));
  }
  m_rowsLeft = 0;
}

void DecodedBlock::start(std::uint64_t firstRow, std::uint64_t rowCount) {
  m_firstRow = firstRow;
  m_rowCount = rowCount;
  m_rowsLeft = rowCount;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    startColumn(m_columns[i], m_sizes[i], m_cursors[i]);
  }
}

void DecodedBlock::startColumn(DecodedColumn& column, std::size_t size, Cursor& cursor) {
  if (size > 0) {
    const bool isOneValue = column.values.size() == size;
    cursor = {column.values.data(), nullptr, isOneValue ? 0 : size};
  } else if (column.texts.offsets.size() == 1) {
    cursor = {column.texts.bytes.data() + column.texts.offsets[0], nullptr, 0};
  } else {
    cursor = {column.texts.bytes.data(), column.texts.offsets.data(), 0};
  }
}

}  // namespace kelvarin
