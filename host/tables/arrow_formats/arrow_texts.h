// Makes text columns of arrays of the Arrow library.
//
// Texts come as they are; integers and decimals with all digits; dates and timestamps in ISO 8601,
// in a form that the column's type alone decides.
#pragma once

#include "arrow/type.h"
#include "host/tables/arrow/iso_time.h"
#include "host/tables/arrow_formats/array_source.h"

namespace kelvarin {

// Null for a type of values that cannot be texts.
ArrayConversion textConversionOf(arrow::Type::type type);

TimestampForm formOf(const arrow::TimestampType& type);

// The day that a date in milliseconds stands for.
std::int64_t daysOfMilliseconds(std::int64_t milliseconds);

}  // namespace kelvarin
