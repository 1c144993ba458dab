// In what two columnar tables differ: columns, and values row by row.
//
// Columns are compared by their names. Values are the same where their bits are, but for NaNs.
// Used by `kelvarin gel diff`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct ColumnDifference {
  enum class Kind { onlyLeft, onlyRight, type, storage, position };
  Kind kind = Kind::type;
  std::string column;
  std::string left;  // what each table has
  std::string right;
};

struct ValueDifference {
  std::uint64_t row = 0;  // counted from 0
  std::string column;
  std::string left;  // as tables show values
  std::string right;
  std::string leftJson;
  std::string rightJson;
};

struct TableDifference {
  std::uint64_t leftRows = 0;
  std::uint64_t rightRows = 0;
  std::vector<ColumnDifference> columns;
  std::optional<ValueDifference> first;  // by rows, then by the left table's columns
  struct Count {
    std::string column;
    std::uint64_t rows;
  };
  std::vector<Count> differingRows;  // of columns that differ, in the left table's order

  bool areEqual() const {
    return leftRows == rightRows && columns.empty() && differingRows.empty();
  }
};

// The error is the path of a table whose rows cannot be read, or of a side file.
Result<TableDifference, std::string> differenceOf(const GelFile& left, const GelFile& right);

}  // namespace kelvarin
