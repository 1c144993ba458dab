// Fills number and key columns from arrays of the Arrow library.
//
// A number column holds doubles: an integer, or the whole part of a decimal, that no double holds
// is a bad value; further decimals are rounded.
#pragma once

#include "arrow/type_fwd.h"
#include "host/tables/arrow_formats/array_source.h"

namespace kelvarin {

// Null for a type of values that cannot be numbers, or keys.
ArrayFill numberFillOf(arrow::Type::type type);
ArrayFill keyFillOf(arrow::Type::type type);

}  // namespace kelvarin
