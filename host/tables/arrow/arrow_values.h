// From columns of the Arrow library to the bytes of values.
//
// Numbers, decimals and booleans (1, 0) become numbers, unsigned 32-bit integers keys, texts, dates
// and timestamps texts (ISO 8601), dictionaries their values. Threads: plain functions.  Errors:
// the row and the reason.
#pragma once

#include <optional>

#include <QString>

#include "arrow/array/array_base.h"
#include "arrow/type.h"
#include "host/tables/files/row_batch.h"

namespace kelvarin {

// Empty for a type that has no place in a row.
std::optional<MetaTypeColumn> columnTypeOf(const arrow::DataType& type);

struct BadValue {
  long long row;  // in the array
  QString reason;
};

// Fills `column`, whose type is that of columnTypeOf(). The array has been validated.
std::optional<BadValue> convertArray(const arrow::Array& array, ValueColumn& column);

}  // namespace kelvarin
