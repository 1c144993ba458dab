#include "host/contract/columns_in_hand.h"

#include <algorithm>

#include "host/contract/rows_at_once.h"

namespace kelvarin {

namespace {

// Below, rows are as quick one by one.
constexpr std::size_t kLeastRows = 4;

}  // namespace

ColumnsInHand::ColumnsInHand(const std::vector<MetaTypeColumn>& types)
    : m_mostRows(rowsAtOnce(types.size() + 1)) {
  for (const MetaTypeColumn type : types) {
    m_columns.push_back({.type = type});
  }
  m_lookout.open(true);
}

std::size_t ColumnsInHand::takeRowsAhead(ActionItem& sink, int pin) {
  const RowsAhead rows = sink.rowsAheadOnInPin(pin);
  const std::size_t count = std::min(rows.count, m_mostRows);
  if (!rows.canBeTaken || count < kLeastRows) {
    m_lookout.sawNothing(true);
    return 0;
  }
  makeRoom();
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
  Room& room = m_rooms[column];
  const int index = static_cast<int>(column);
  switch (wanted.type) {
    case MetaTypeColumn::number:
      wanted.numbers = rows.numbers(index, 0, count, room.numbers.data());
      return wanted.numbers != nullptr;
    case MetaTypeColumn::key:
      wanted.keys = rows.keys(index, 0, count, room.keys.data());
      return wanted.keys != nullptr;
    default:
      wanted.texts = rows.texts(index, 0, count, room.texts.data());
      return wanted.texts != nullptr;
  }
}

void ColumnsInHand::makeRoom() {
  if (m_rooms.size() == m_columns.size()) {
    return;
  }
  m_rooms.resize(m_columns.size());
  for (std::size_t i = 0; i < m_rooms.size(); ++i) {
    switch (m_columns[i].type) {
      case MetaTypeColumn::number:
        m_rooms[i].numbers.resize(m_mostRows);
        break;
      case MetaTypeColumn::key:
        m_rooms[i].keys.resize(m_mostRows);
        break;
      default:
        m_rooms[i].texts.resize(m_mostRows);
    }
  }
}

}  // namespace kelvarin
