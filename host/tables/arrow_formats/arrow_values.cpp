#include "host/tables/arrow_formats/arrow_values.h"

#include <cstdlib>

#include "arrow/type_traits.h"
#include "host/tables/arrow_formats/arrow_numbers.h"
#include "host/tables/arrow_formats/arrow_texts.h"

namespace kelvarin {

namespace {

ArrayFill fillOf(arrow::Type::type type, MetaTypeColumn column) {
  switch (column) {
    case MetaTypeColumn::number:
      return numberFillOf(type);
    case MetaTypeColumn::key:
      return keyFillOf(type);
    default:
      return textFillOf(type);
  }
}

// A forged scale would make texts of millions of zeros.
bool isScaleSensible(const arrow::DataType& decimal) {
  const int scale = static_cast<const arrow::DecimalType&>(decimal).scale();
  return std::abs(scale) <= arrow::Decimal256Type::kMaxPrecision;
}

}  // namespace

const arrow::DataType& valueTypeOf(const arrow::DataType& type) {
  return type.id() == arrow::Type::DICTIONARY
             ? *static_cast<const arrow::DictionaryType&>(type).value_type()
             : type;
}

std::vector<MetaTypeColumn> columnTypesOf(const arrow::DataType& type) {
  const arrow::Type::type values = valueTypeOf(type).id();
  std::vector<MetaTypeColumn> types;
  if (arrow::is_decimal(values) && !isScaleSensible(valueTypeOf(type))) {
    return types;
  }
  for (const auto column : {MetaTypeColumn::number, MetaTypeColumn::key, MetaTypeColumn::text}) {
    if (fillOf(values, column) == nullptr) {
      continue;
    }
    const bool isDefault = values == arrow::Type::UINT32 && column == MetaTypeColumn::key;
    types.insert(isDefault ? types.begin() : types.end(), column);
  }
  return types;
}

std::optional<BadValue> convertArray(const arrow::Array& array, ValueColumn& column,
                                     ColumnTally& tally) {
  if (array.type_id() != arrow::Type::DICTIONARY) {
    return fillOf(array.type_id(), column.type())(ArraySource{array, array}, column, tally);
  }
  const auto& coded = static_cast<const arrow::DictionaryArray&>(array);
  const arrow::Array& values = *coded.dictionary();
  return fillOf(values.type_id(), column.type())(ArraySource{array, values, &coded}, column, tally);
}

}  // namespace kelvarin
