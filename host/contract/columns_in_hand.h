// Rows that a sink takes together: of every column where their values lie.
//
// A sink gets its next row as always, and then asks here whether more of them are in hand behind
// it. Memory is taken once.
// Used by: the sinks of host/tables and the writer of columnar files. Threads: one.
#pragma once

#include <vector>

#include "host/contract/action_item.h"
#include "host/contract/lookout.h"

namespace kelvarin {

class KELVARIN_CORE ColumnsInHand {
 public:
  // One value behind the other in the member of the column's type.
  struct Column {
    MetaTypeColumn type;
    const double* numbers = nullptr;
    const std::uint32_t* keys = nullptr;
    const unsigned char* const* texts = nullptr;
  };

  // The columns that the sink wants, which are the first ones of its rows.
  explicit ColumnsInHand(const std::vector<MetaTypeColumn>& types);

  // Takes rows of the pin: the one that it gave last and those behind it. 0: it is to be taken
  // alone.
  std::size_t takeRows(ActionItem& sink, int pin) {
    return m_lookout.isDue() ? takeRowsAhead(sink, pin) : 0;
  }
  // Of the rows that were taken last, which stay until the next row of the pin.
  const std::vector<Column>& columns() const { return m_columns; }

 private:
  // Where values are put that do not lie one behind the other.
  struct Room {
    std::vector<double> numbers;
    std::vector<std::uint32_t> keys;
    std::vector<const unsigned char*> texts;
  };

  std::size_t takeRowsAhead(ActionItem& sink, int pin);
  bool find(std::size_t column, const RowsAhead& rows, std::size_t count);
  void makeRoom();

  std::vector<Column> m_columns;
  std::vector<Room> m_rooms;
  std::size_t m_mostRows;
  Lookout m_lookout;
};

}  // namespace kelvarin
