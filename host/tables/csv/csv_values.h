// From the fields of one column, as the bulk reader gives them, to the bytes of values.
//
// Fields come as arrays of bytes, missing where the unquoted field is the null text.
// Threads: plain functions.  Errors: the row, to be turned into a message by the caller.
#pragma once

#include <optional>

#include "arrow/array/array_binary.h"
#include "host/tables/files/row_batch.h"

namespace kelvarin {

// A field that does not fit its column's type.
struct BadField {
  long long row;  // in the array
  std::string_view value;
};

// What becomes of the fields that are no number or key.
struct BadFieldCount {
  bool isTolerated = false;
  long long count = 0;
  long long firstRow = -1;  // in the file, counted from 0
};

// Fills `column`. Bad fields become missing and are counted when they are tolerated; else the first
// one ends the work. `firstRow` is the number of the array's first row in the file.
std::optional<BadField> convertFields(const arrow::BinaryArray& fields, long long firstRow,
                                      ValueColumn& column, BadFieldCount& badFields);

// The row of the first text that is not UTF-8.
std::optional<long long> firstTextNotUtf8(const arrow::BinaryArray& fields);

// Tells whether the fields of a column are numbers.
class TypeInference {
 public:
  // Looks at no more than `rowCount` fields.
  void look(const arrow::BinaryArray& fields, long long rowCount);
  MetaTypeColumn type() const {
    return m_hasNumber && !m_hasText ? MetaTypeColumn::number : MetaTypeColumn::text;
  }

 private:
  bool m_hasNumber = false;
  bool m_hasText = false;
};

}  // namespace kelvarin
