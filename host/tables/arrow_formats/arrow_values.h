// From columns of the Arrow library to the bytes of values.
//
// Numbers, decimals and booleans (1, 0) become numbers, unsigned 32-bit integers keys, texts, dates
// and timestamps texts (ISO 8601), dictionaries their values. A user may declare integers and
// decimals as texts, and integers as numbers or keys.
#pragma once

#include <vector>

#include "arrow/type.h"
#include "host/tables/arrow_formats/array_source.h"

namespace kelvarin {

// What values of a type can be; the first is the default. Empty for a type that is not read.
std::vector<MetaTypeColumn> columnTypesOf(const arrow::DataType& type);

// The type of the values: of a dictionary, that of its values.
const arrow::DataType& valueTypeOf(const arrow::DataType& type);

// A column of `type`, which is one of columnTypesOf(). The array has been validated. `texts` are
// those of the arrays before.
ConvertedArray convertArray(const arrow::Array& array, MetaTypeColumn type, ColumnTally& tally,
                            DictionaryTexts& texts);

}  // namespace kelvarin
