#include "host/contract/columns_in_hand.h"

#include <algorithm>

#include "host/contract/rows_at_once.h"

namespace kelvarin {

namespace {

// Fewer rows are as quick one by one.
constexpr std::size_t kMinRows = 4;

}  // namespace

ColumnsInHand::ColumnsInHand(const std::vector<MetaTypeColumn>& types)
    : m_maxRows(rowsAtOnce(types.size() + 1)) {
  for (const MetaTypeColumn type : types) {
    m_columns.push_back({.type = type});
  }
  m_lookout.open(true);
}

std::size_t ColumnsInHand::takeRowsAhead(ActionItem& sink, int pin) {
  const RowsAhead rows = sink.rowsAheadOnInPin(pin);
  const std::size_t count = std::min(rows.count, m_maxRows);
  if (!rows.canBeTaken || count < kMinRows) {
    m_lookout.sawNothing(true);
    return 0;
  }
  allocateBuffers();
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (!find(i, rows, count)) {
      m_lookout.sawNothing(false);
      return 0;
    }
  }
  sink.takeRowsOfInPin(pin, count - 1);
  return count;
}

// False where the column's values come row by row only.
bool ColumnsInHand::find(std::size_t column, const RowsAhead& rows, std::size_t count) {
  Column& wanted = m_columns[column];
  Buffers& buffers = m_buffers[column];
  const int index = static_cast<int>(column);
  switch (wanted.type) {
    case MetaTypeColumn::number:
      wanted.numbers = rows.numbers(index, 0, count, buffers.numbers.data());
      return wanted.numbers != nullptr;
    case MetaTypeColumn::key:
      wanted.keys = rows.keys(index, 0, count, buffers.keys.data());
      return wanted.keys != nullptr;
    default:
      wanted.texts = rows.texts(index, 0, count, buffers.texts.data());
      return wanted.texts != nullptr;
  }
}

void ColumnsInHand::allocateBuffers() {
  if (m_buffers.size() == m_columns.size()) {
    return;
  }
  m_buffers.resize(m_columns.size());
  for (std::size_t i = 0; i < m_buffers.size(); ++i) {
    switch (m_columns[i].type) {
      case MetaTypeColumn::number:
        m_buffers[i].numbers.resize(m_maxRows);
        break;
      case MetaTypeColumn::key:
        m_buffers[i].keys.resize(m_maxRows);
        break;
      default:
        m_buffers[i].texts.resize(m_maxRows);
    }
  }
}

}  // namespace kelvarin
