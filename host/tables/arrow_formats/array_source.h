// The values of an array one by one, what is made of them, and what is noticed about them.
//
// A dictionary array has codes in its rows and the values apart.
#pragma once

#include <optional>
#include <string>

#include "arrow/array/array_base.h"
#include "arrow/array/array_dict.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

struct DictionaryTexts;

struct ArraySource {
  const arrow::Array& rows;
  const arrow::Array& values;
  const arrow::DictionaryArray* dictionary = nullptr;  // null where rows and values are one
  DictionaryTexts* texts = nullptr;                    // with a dictionary

  std::int64_t rowCount() const { return rows.length(); }
  // Every row has a value of its own.
  bool isPlain() const { return dictionary == nullptr && rows.null_count() == 0; }
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
  std::int64_t row;  // in the array
  std::string text;
};

// The values of an array as rows have them.
struct ConvertedArray {
  BatchColumn values;
  std::optional<BadValue> bad;  // the values from this one on are not there
};

// Rows of one kind: how many, and which is the first of the file.
struct RowCount {
  long long count = 0;
  long long firstRow = -1;

  void add(long long row) { firstRow = count++ == 0 ? row : firstRow; }
  // Rows that come after these.
  void add(const RowCount& later) {
    firstRow = count == 0 ? later.firstRow : firstRow;
    count += later.count;
  }
};

// What has been noticed in the values of a column.
struct ColumnTally {
  bool areBadValuesNull = false;
  long long rowsBefore = 0;  // the array's first row
  RowCount badValues;
  RowCount finerTimes;  // timestamps with digits below the millisecond

  // True when the value becomes missing.
  bool takesAsMissing(std::int64_t row) {
    if (areBadValuesNull) {
      badValues.add(rowsBefore + row);
    }
    return areBadValuesNull;
  }
  void add(const ColumnTally& later) {
    badValues.add(later.badValues);
    finerTimes.add(later.finerTimes);
  }
};

// Makes a column of the values of an array.
using ArrayConversion = ConvertedArray (*)(const ArraySource& source, ColumnTally& tally);

}  // namespace kelvarin
