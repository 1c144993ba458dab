// The values of an array one by one, and what is noticed about them.
//
// A dictionary array has codes in its rows and the values apart.
#pragma once

#include <optional>
#include <string>

#include "arrow/array/array_base.h"
#include "arrow/array/array_dict.h"
#include "host/tables/files/row_batch.h"

namespace kelvarin {

struct ArraySource {
  const arrow::Array& rows;
  const arrow::Array& values;
  const arrow::DictionaryArray* dictionary = nullptr;  // null where rows and values are one

  long long rowCount() const { return rows.length(); }
  // Of the row's value among `values`.
  std::int64_t positionOf(std::int64_t row) const {
    return dictionary == nullptr ? row : dictionary->GetValueIndex(row);
  }
  bool isMissing(std::int64_t row) const {
    return rows.IsNull(row) || (dictionary != nullptr && values.IsNull(positionOf(row)));
  }
};

// A value that its column's type cannot hold.
struct BadValue {
  long long row;  // in the array
  std::string text;
};

// Rows of one kind: how many, and which is the first of the file.
struct RowCount {
  long long count = 0;
  long long firstRow = -1;

  void add(long long row) { firstRow = count++ == 0 ? row : firstRow; }
};

// What has been read of a column so far.
struct ColumnTally {
  bool areBadValuesNull = false;
  long long rowsBefore = 0;  // the array's first row
  RowCount badValues;
  RowCount finerTimes;  // timestamps with digits below the millisecond

  // True when the value becomes missing.
  bool takesAsMissing(long long row) {
    if (areBadValuesNull) {
      badValues.add(rowsBefore + row);
    }
    return areBadValuesNull;
  }
};

// Fills a column with the values of an array.
using ArrayFill = std::optional<BadValue> (*)(const ArraySource& source, ValueColumn& column,
                                              ColumnTally& tally);

}  // namespace kelvarin
