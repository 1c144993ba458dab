// The values of an array one by one.
//
// A dictionary array has codes in its rows and the values apart.
#pragma once

#include "arrow/array/array_base.h"
#include "arrow/array/array_dict.h"
#include "host/tables/arrow/column_tally.h"

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

// Makes a column of the values of an array.
using ArrayConversion = ConvertedArray (*)(const ArraySource& source, ColumnTally& tally);

}  // namespace kelvarin
