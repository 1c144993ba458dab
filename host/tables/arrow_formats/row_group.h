// Rows that are written together: one row group of a Parquet file, one record batch of an Arrow
// file.
//
// The columns stay in the pieces in which they came. Which rows make a group depends on the rows
// alone, not on the batches in which they come.
// Used by: RowGroupWriter, and the encoders of both formats.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "host/tables/arrow_formats/gathered_rows.h"

namespace kelvarin {

// One column of a row group.
struct GroupColumn {
  struct Piece {
    BatchColumn values;
    std::size_t rowCount;
  };

  MetaTypeColumn type;
  std::vector<Piece> pieces;
};

class RowGroup {
 public:
  explicit RowGroup(const std::vector<MetaTypeColumn>& types);

  // Takes rows from `begin` on, until the group is full, and returns how many. A group that is full
  // takes none.
  std::size_t append(const GatheredRows& rows, std::size_t begin);
  bool isFull() const { return m_rowCount >= kMaxRows || m_textBytes >= kMaxTextBytes; }
  std::size_t rowCount() const { return m_rowCount; }
  const std::vector<GroupColumn>& columns() const { return m_columns; }

 private:
  static constexpr std::size_t kMaxRows = 128 * 1024;
  static constexpr std::size_t kMaxTextBytes = 64 << 20;

  std::size_t rowsThatFit(const GatheredRows& rows, std::size_t begin);

  std::vector<GroupColumn> m_columns;
  std::size_t m_rowCount = 0;
  std::size_t m_textBytes = 0;
};

// Passes over the values of a group's column, so many rows at a time.
class GroupColumnCursor {
 public:
  explicit GroupColumnCursor(const GroupColumn& column) : m_column(column) {}

  // Calls visit(values, first, count) for the pieces of the next rows, of which there are so many:
  // `count` values from `first` on.
  template <typename Visit>
  void next(std::size_t rows, Visit visit) {
    while (rows > 0) {
      const GroupColumn::Piece& piece = m_column.pieces[m_piece];
      const std::size_t count = std::min(rows, piece.rowCount - m_row);
      visit(piece.values, m_row, count);
      rows -= count;
      m_row += count;
      if (m_row == piece.rowCount) {
        ++m_piece;
        m_row = 0;
      }
    }
  }

 private:
  const GroupColumn& m_column;
  std::size_t m_piece = 0;
  std::size_t m_row = 0;
};

}  // namespace kelvarin
