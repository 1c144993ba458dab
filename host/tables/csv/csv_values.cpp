#include "host/tables/csv/csv_values.h"

#include <algorithm>

#include "arrow/util/utf8.h"
#include "host/tables/csv/csv_number.h"

namespace kelvarin {

namespace {

struct NumberType {
  using Value = double;
  static constexpr Value kMissing = kNullNumber;
  static bool parse(std::string_view field, Value& value) { return parseNumber(field, value); }
};

struct KeyType {
  using Value = std::uint32_t;
  static constexpr Value kMissing = kNullKey;
  static bool parse(std::string_view field, Value& value) { return parseKey(field, value); }
};

template <typename Type>
std::optional<BadField> parseFields(const arrow::BinaryArray& fields, long long firstRow,
                                    typename Type::Value* values, BadFieldCount& badFields) {
  const bool hasNulls = fields.null_count() > 0;
  for (long long row = 0; row < fields.length(); ++row) {
    const std::string_view field = fields.GetView(row);
    if (field.empty() || (hasNulls && fields.IsNull(row))) {
      values[row] = Type::kMissing;
      continue;
    }
    if (Type::parse(field, values[row])) [[likely]] {
      continue;
    }
    if (!badFields.isTolerated) {
      return BadField{row, field};
    }
    values[row] = Type::kMissing;
    badFields.firstRow = badFields.count == 0 ? firstRow + row : badFields.firstRow;
    ++badFields.count;
  }
  return std::nullopt;
}

void copyTexts(const arrow::BinaryArray& fields, ValueColumn& column) {
  const bool hasNulls = fields.null_count() > 0;
  const auto rowCount = static_cast<std::size_t>(fields.length());
  unsigned char* place =
      column.replace(4 * rowCount + static_cast<std::size_t>(fields.total_values_length()));
  for (long long row = 0; row < fields.length(); ++row) {
    if (hasNulls && fields.IsNull(row)) {
      place = putNullText(place);
      continue;
    }
    const std::string_view field = fields.GetView(row);
    place = putText(place, field.data(), field.size());
  }
}

}  // namespace

std::optional<BadField> convertFields(const arrow::BinaryArray& fields, long long firstRow,
                                      ValueColumn& column, BadFieldCount& badFields) {
  const auto rowCount = static_cast<std::size_t>(fields.length());
  switch (column.type()) {
    case MetaTypeColumn::number:
      return parseFields<NumberType>(fields, firstRow, column.replaceNumbers(rowCount), badFields);
    case MetaTypeColumn::key:
      return parseFields<KeyType>(fields, firstRow, column.replaceKeys(rowCount), badFields);
    default:
      copyTexts(fields, column);
      return std::nullopt;
  }
}

std::optional<long long> firstTextNotUtf8(const arrow::BinaryArray& fields) {
  const std::uint8_t* bytes = fields.raw_data();
  const bool isValidAsAWhole =
      arrow::util::ValidateUTF8(bytes + fields.value_offset(0), fields.total_values_length());
  for (long long row = 0; row < fields.length(); ++row) {
    // A text that begins inside a character makes the whole valid with its neighbour.
    const bool beginsInside =
        fields.value_length(row) > 0 && (bytes[fields.value_offset(row)] & 0xC0) == 0x80;
    if (beginsInside || (!isValidAsAWhole && !arrow::util::ValidateUTF8(fields.GetView(row)))) {
      return row;
    }
  }
  return std::nullopt;
}

void TypeInference::look(const arrow::BinaryArray& fields, long long rowCount) {
  const long long end = std::min<long long>(rowCount, fields.length());
  for (long long row = 0; row < end && !m_hasText; ++row) {
    const std::string_view field = fields.GetView(row);
    if (field.empty() || fields.IsNull(row)) {
      continue;
    }
    double number;
    m_hasText = !parseNumber(field, number);
    m_hasNumber = m_hasNumber || !m_hasText;
  }
}

}  // namespace kelvarin
