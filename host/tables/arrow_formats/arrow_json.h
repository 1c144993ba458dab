// Makes text columns of arrays whose type has no other reading: each value as JSON.
//
// Lists are arrays, structs and maps objects. Integers and decimals keep all digits. What JSON has
// no form for is a text: dates, times and durations in ISO 8601, bytes in Base64, NaN and the
// infinities as NaN, Infinity and -Infinity.
#pragma once

#include "arrow/array/array_base.h"
#include "host/tables/arrow/column_tally.h"

namespace kelvarin {

// The array has been validated. A row that is null is missing, a null within a value is the word.
ConvertedArray jsonTextsOf(const arrow::Array& array);

}  // namespace kelvarin
