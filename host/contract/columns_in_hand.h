// Rows that a sink takes together, as the addresses of each column's values.
//
// A sink gets its next row as always, and then asks here whether more rows after it are known.
// Memory is allocated once.
// Used by: the sinks of host/tables and the writer of columnar files.
#pragma once

#include <vector>

#include "host/contract/action_item.h"
#include "host/contract/lookout.h"

namespace kelvarin {

class KELVARIN_CORE ColumnsInHand {
 public:
  // Contiguous values, in the member of the column's type.
  struct Column {
    MetaTypeColumn type;
    const double* numbers = nullptr;
    const std::uint32_t* keys = nullptr;
    const unsigned char* const* texts = nullptr;
  };

  // The columns that the sink wants, which are the first ones of its rows.
  explicit ColumnsInHand(const std::vector<MetaTypeColumn>& types);

  // Takes rows of the pin: the last one that it returned and those after it. 0: that row is to be
  // read alone.
  std::size_t takeRows(ActionItem& sink, int pin) {
    return m_lookout.isDue() ? takeRowsAhead(sink, pin) : 0;
  }
  // Of the rows that were taken last, which stay until the next row of the pin.
  const std::vector<Column>& columns() const { return m_columns; }

 private:
  // For the values of one column where they are not contiguous.
  struct Buffers {
    std::vector<double> numbers;
    std::vector<std::uint32_t> keys;
    std::vector<const unsigned char*> texts;
  };

  std::size_t takeRowsAhead(ActionItem& sink, int pin);
  bool find(std::size_t column, const RowsAhead& rows, std::size_t count);
  void allocateBuffers();

  std::vector<Column> m_columns;
  std::vector<Buffers> m_buffers;
  std::size_t m_maxRows;
  Lookout m_lookout;
};

}  // namespace kelvarin
