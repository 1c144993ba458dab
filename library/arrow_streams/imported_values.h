// Columns made of the values of Arrow arrays.
//
// A number column holds doubles: an integer, or the whole part of a decimal, that no double holds
// is a bad value; further decimals are rounded. Texts come as they are; integers and decimals with
// all digits; dates and timestamps in ISO 8601.
// Used by: imported_batch.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <memory>

#include "host/tables/arrow/column_tally.h"
#include "library/arrow_streams/array_values.h"
#include "library/arrow_streams/imported_batch.h"

namespace kelvarin {

// `owner` keeps the buffers of the array, for values that are not copied.
ConvertedArray importNumbers(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                             const std::shared_ptr<const void>& owner);
ConvertedArray importKeys(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                          const std::shared_ptr<const void>& owner);
ConvertedArray importTexts(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally);

// The texts of all values, and then those of rows with codes for them.
ImportedDictionary importDictionary(const ArraySlice& values, const ArrowType& type);
ConvertedArray importCodes(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                           const std::shared_ptr<const void>& owner,
                           const ImportedDictionary& dictionary);

}  // namespace kelvarin
