// A column of a row group in a type that rows do not have, made of its numbers, keys or texts.
//
// Used by: the writers of both formats, while a column is encoded.
// Threads: any.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "host/tables/arrow/stored_type.h"
#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/arrow_formats/row_group.h"

namespace kelvarin {

// Values that their type cannot hold; they count as missing.
struct BadValues {
  long long count = 0;
  std::size_t firstRow = 0;  // of the row group
  std::string firstText;
};

template <typename Value>
struct TypedColumn {
  explicit TypedColumn(std::size_t rowCount) : values(rowCount) {}

  bool isMissing(std::size_t row) const { return !isThere.empty() && isThere[row] == 0; }

  ColumnMemory<Value> values;         // of all rows
  std::vector<std::uint8_t> isThere;  // of all rows; empty where none is missing
};

// Values of type std::int64_t, std::int32_t, std::uint32_t, double and bool.
template <typename Value>
TypedColumn<Value> typedColumn(const GroupColumn& column, std::size_t rowCount,
                               const StoredType& type, BadValues& bad);

// Whether the column has to be made into another type.
inline bool isTyped(const GroupColumn& column, const StoredType& type) {
  return type != plainStoredType(column.type);
}

// Calls visit(values) with the column in its type, of one that isTyped().
template <typename Visit>
auto withTypedColumn(const GroupColumn& column, std::size_t rowCount, const StoredType& type,
                     BadValues& bad, Visit visit) {
  switch (type.kind) {
    case StoredType::Kind::int64:
    case StoredType::Kind::timestamp:
      return visit(typedColumn<std::int64_t>(column, rowCount, type, bad));
    case StoredType::Kind::int32:
    case StoredType::Kind::date:
      return visit(typedColumn<std::int32_t>(column, rowCount, type, bad));
    case StoredType::Kind::key:
      return visit(typedColumn<std::uint32_t>(column, rowCount, type, bad));
    case StoredType::Kind::boolean:
      return visit(typedColumn<bool>(column, rowCount, type, bad));
    default:
      return visit(typedColumn<double>(column, rowCount, type, bad));
  }
}

// Passes over the values, so many rows at a time; as GroupColumnCursor.
template <typename Value>
class TypedColumnCursor {
 public:
  explicit TypedColumnCursor(const TypedColumn<Value>& column) : m_column(column) {}

  template <typename Visit>
  void next(std::size_t rows, Visit visit) {
    if (rows > 0) {
      visit(m_column, m_row, rows);
      m_row += rows;
    }
  }

 private:
  const TypedColumn<Value>& m_column;
  std::size_t m_row = 0;
};

}  // namespace kelvarin
