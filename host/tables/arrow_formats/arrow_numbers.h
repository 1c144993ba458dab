// Makes number and key columns of arrays of the Arrow library.
//
// A number column holds doubles: an integer, or the whole part of a decimal, that no double holds
// is a bad value; further decimals are rounded. Values that have the bytes of a column already are
// not copied.
#pragma once

#include "arrow/type_fwd.h"
#include "host/tables/arrow_formats/array_source.h"

namespace kelvarin {

// Null for a type of values that cannot be numbers, or keys.
ArrayConversion numberConversionOf(arrow::Type::type type);
ArrayConversion keyConversionOf(arrow::Type::type type);

}  // namespace kelvarin
