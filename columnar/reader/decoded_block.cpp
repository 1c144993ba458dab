#include "columnar/reader/decoded_block.h"

namespace kelvarin {

void DecodedBlock::setColumns(const std::vector<MetaTypeColumn>& types) {
  m_columns.clear();
  m_cursors.assign(types.size(), Cursor{});
  for (std::size_t i = 0; i < types.size(); ++i) {
    m_cursors[i].step = fixedSizeOf(types[i]);
  }
  m_rowsLeft = 0;
}

void DecodedBlock::start(std::uint64_t firstRow, std::uint64_t rowCount) {
  m_firstRow = firstRow;
  m_rowCount = rowCount;
  m_rowsLeft = rowCount;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    DecodedColumn& column = m_columns[i];
    Cursor& cursor = m_cursors[i];
    const bool isText = cursor.step == 0;
    cursor.next = isText ? column.texts.bytes.data() : column.values.data();
    cursor.offset = isText ? column.texts.offsets.data() : nullptr;
  }
}

}  // namespace kelvarin
