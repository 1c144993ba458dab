#include "host/tables/arrow/arrow_values.h"

#include <charconv>
#include <cmath>
#include <concepts>
#include <string>

#include <fmt/format.h>

#include "arrow/array.h"
#include "arrow/scalar.h"
#include "arrow/util/float16.h"
#include "host/tables/arrow/iso_time.h"
#include "host/tables/messages.h"

namespace kelvarin {

namespace {

using arrow::Type;

// A number of a file, never the bits that mean missing.
double presentNumber(double number) {
  return std::isnan(number) ? kNotANumber : number;
}

// The values of an array one by one; dictionaries have an indirection before it.
struct Positions {
  const arrow::DictionaryArray* dictionary = nullptr;
  std::int64_t of(std::int64_t row) const {
    return dictionary == nullptr ? row : dictionary->GetValueIndex(row);
  }
};

bool isMissing(const arrow::Array& rows, const arrow::Array& values, const Positions& positions,
               std::int64_t row) {
  return rows.IsNull(row) || (positions.dictionary != nullptr && values.IsNull(positions.of(row)));
}

// Gives one value as a number; false when the number cannot be held, with the value as text.
template <typename Read>
std::optional<BadValue> fillNumbers(const arrow::Array& rows, const arrow::Array& values,
                                    const Positions& positions, ValueColumn& column, Read read) {
  double* numbers = column.replaceNumbers(static_cast<std::size_t>(rows.length()));
  for (std::int64_t row = 0; row < rows.length(); ++row) {
    if (isMissing(rows, values, positions, row)) {
      numbers[row] = kNullNumber;
      continue;
    }
    if (const std::int64_t at = positions.of(row); !read(at, numbers[row])) {
      return BadValue{row, table_messages::integerTooLarge(
                               QString::fromStdString((*values.GetScalar(at))->ToString()))};
    }
  }
  return std::nullopt;
}

template <typename Integer>
bool integerAsNumber(Integer integer, double& number) {
  number = static_cast<double>(integer);
  if constexpr (sizeof(Integer) < 8) {
    return true;
  }
  constexpr double kBeyond = std::signed_integral<Integer> ? 0x1p63 : 0x1p64;
  return number < kBeyond && static_cast<Integer>(number) == integer;
}

template <typename Array>
std::optional<BadValue> fillIntegers(const arrow::Array& rows, const arrow::Array& values,
                                     const Positions& positions, ValueColumn& column) {
  const auto* raw = static_cast<const Array&>(values).raw_values();
  return fillNumbers(rows, values, positions, column, [raw](std::int64_t at, double& number) {
    return integerAsNumber(raw[at], number);
  });
}

template <typename Array>
std::optional<BadValue> fillFloats(const arrow::Array& rows, const arrow::Array& values,
                                   const Positions& positions, ValueColumn& column) {
  const auto* raw = static_cast<const Array&>(values).raw_values();
  return fillNumbers(rows, values, positions, column, [raw](std::int64_t at, double& number) {
    number = presentNumber(static_cast<double>(raw[at]));
    return true;
  });
}

// Through the decimal's text, so that it is rounded once. A decimal without decimals is an integer.
template <typename Array>
std::optional<BadValue> fillDecimals(const arrow::Array& rows, const arrow::Array& values,
                                     const Positions& positions, ValueColumn& column) {
  const auto& decimals = static_cast<const Array&>(values);
  const bool isInteger = static_cast<const arrow::DecimalType&>(*values.type()).scale() == 0;
  return fillNumbers(rows, values, positions, column, [&](std::int64_t at, double& number) {
    const std::string text = decimals.FormatValue(at);
    std::from_chars(text.data(), text.data() + text.size(), number);
    return !isInteger || fmt::format("{:.0f}", number) == text;
  });
}

std::optional<BadValue> fillHalfFloats(const arrow::Array& rows, const arrow::Array& values,
                                       const Positions& positions, ValueColumn& column) {
  const auto& halves = static_cast<const arrow::HalfFloatArray&>(values);
  return fillNumbers(rows, values, positions, column, [&](std::int64_t at, double& number) {
    number = presentNumber(arrow::util::Float16::FromBits(halves.Value(at)).ToDouble());
    return true;
  });
}

std::optional<BadValue> fillBooleans(const arrow::Array& rows, const arrow::Array& values,
                                     const Positions& positions, ValueColumn& column) {
  const auto& booleans = static_cast<const arrow::BooleanArray&>(values);
  return fillNumbers(rows, values, positions, column, [&](std::int64_t at, double& number) {
    number = booleans.Value(at) ? 1.0 : 0.0;
    return true;
  });
}

std::optional<BadValue> fillKeys(const arrow::Array& rows, const arrow::Array& values,
                                 const Positions& positions, ValueColumn& column) {
  std::uint32_t* keys = column.replaceKeys(static_cast<std::size_t>(rows.length()));
  const std::uint32_t* raw = static_cast<const arrow::UInt32Array&>(values).raw_values();
  for (std::int64_t row = 0; row < rows.length(); ++row) {
    if (isMissing(rows, values, positions, row)) {
      keys[row] = kNullKey;
      continue;
    }
    keys[row] = raw[positions.of(row)];
    if (isNullKey(keys[row])) {
      return BadValue{row, table_messages::keyTooLarge(QString::number(keys[row]))};
    }
  }
  return std::nullopt;
}

// `view` gives the bytes of a value; they are valid until it is called again.
template <typename View>
void fillTexts(const arrow::Array& rows, const arrow::Array& values, const Positions& positions,
               ValueColumn& column, View view) {
  std::size_t size = 0;
  for (std::int64_t row = 0; row < rows.length(); ++row) {
    size += 4 + (isMissing(rows, values, positions, row) ? 0 : view(positions.of(row)).size());
  }
  unsigned char* place = column.replace(size);
  for (std::int64_t row = 0; row < rows.length(); ++row) {
    if (isMissing(rows, values, positions, row)) {
      place = putNullText(place);
      continue;
    }
    const std::string_view text = view(positions.of(row));
    place = putText(place, text.data(), text.size());
  }
}

template <typename Array>
std::optional<BadValue> fillFromViews(const arrow::Array& rows, const arrow::Array& values,
                                      const Positions& positions, ValueColumn& column) {
  const auto& texts = static_cast<const Array&>(values);
  fillTexts(rows, values, positions, column,
            [&](std::int64_t at) -> std::string_view { return texts.GetView(at); });
  return std::nullopt;
}

template <typename Append>
std::optional<BadValue> fillMadeTexts(const arrow::Array& rows, const arrow::Array& values,
                                      const Positions& positions, ValueColumn& column,
                                      Append append) {
  std::string text;
  fillTexts(rows, values, positions, column, [&](std::int64_t at) -> std::string_view {
    text.clear();
    append(text, at);
    return text;
  });
  return std::nullopt;
}

std::optional<BadValue> fillDates(const arrow::Array& rows, const arrow::Array& values,
                                  const Positions& positions, ValueColumn& column) {
  if (values.type_id() == Type::DATE32) {
    const auto& dates = static_cast<const arrow::Date32Array&>(values);
    return fillMadeTexts(rows, values, positions, column, [&](std::string& text, std::int64_t at) {
      appendIsoDate(text, dates.Value(at));
    });
  }
  constexpr std::int64_t kMillisecondsPerDay = 86400000;
  const auto& dates = static_cast<const arrow::Date64Array&>(values);
  return fillMadeTexts(rows, values, positions, column, [&](std::string& text, std::int64_t at) {
    const std::int64_t milliseconds = dates.Value(at);
    const bool roundsUp = milliseconds < 0 && milliseconds % kMillisecondsPerDay != 0;
    appendIsoDate(text, milliseconds / kMillisecondsPerDay - (roundsUp ? 1 : 0));
  });
}

std::optional<BadValue> fillTimestamps(const arrow::Array& rows, const arrow::Array& values,
                                       const Positions& positions, ValueColumn& column) {
  const auto& type = static_cast<const arrow::TimestampType&>(*values.type());
  const int digits = 3 * static_cast<int>(type.unit());
  const bool isUtc = !type.timezone().empty();
  const auto& times = static_cast<const arrow::TimestampArray&>(values);
  return fillMadeTexts(rows, values, positions, column, [&](std::string& text, std::int64_t at) {
    appendIsoTimestamp(text, times.Value(at), digits, isUtc);
  });
}

static_assert(arrow::TimeUnit::SECOND == 0 && arrow::TimeUnit::NANO == 3, "decimals of a tick");

// One line a type that has a place in a row.
struct TypeLine {
  Type::type type;
  MetaTypeColumn column;
  std::optional<BadValue> (*fill)(const arrow::Array& rows, const arrow::Array& values,
                                  const Positions& positions, ValueColumn& column);
};

constexpr auto kNumber = MetaTypeColumn::number;
constexpr auto kText = MetaTypeColumn::text;

constexpr TypeLine kTypes[] = {
    {Type::BOOL, kNumber, fillBooleans},
    {Type::INT8, kNumber, fillIntegers<arrow::Int8Array>},
    {Type::INT16, kNumber, fillIntegers<arrow::Int16Array>},
    {Type::INT32, kNumber, fillIntegers<arrow::Int32Array>},
    {Type::INT64, kNumber, fillIntegers<arrow::Int64Array>},
    {Type::UINT8, kNumber, fillIntegers<arrow::UInt8Array>},
    {Type::UINT16, kNumber, fillIntegers<arrow::UInt16Array>},
    {Type::UINT32, MetaTypeColumn::key, fillKeys},
    {Type::UINT64, kNumber, fillIntegers<arrow::UInt64Array>},
    {Type::HALF_FLOAT, kNumber, fillHalfFloats},
    {Type::FLOAT, kNumber, fillFloats<arrow::FloatArray>},
    {Type::DOUBLE, kNumber, fillFloats<arrow::DoubleArray>},
    {Type::DECIMAL32, kNumber, fillDecimals<arrow::Decimal32Array>},
    {Type::DECIMAL64, kNumber, fillDecimals<arrow::Decimal64Array>},
    {Type::DECIMAL128, kNumber, fillDecimals<arrow::Decimal128Array>},
    {Type::DECIMAL256, kNumber, fillDecimals<arrow::Decimal256Array>},
    {Type::STRING, kText, fillFromViews<arrow::StringArray>},
    {Type::LARGE_STRING, kText, fillFromViews<arrow::LargeStringArray>},
    {Type::STRING_VIEW, kText, fillFromViews<arrow::StringViewArray>},
    {Type::DATE32, kText, fillDates},
    {Type::DATE64, kText, fillDates},
    {Type::TIMESTAMP, kText, fillTimestamps},
};

const TypeLine* lineOf(Type::type type) {
  for (const TypeLine& line : kTypes) {
    if (line.type == type) {
      return &line;
    }
  }
  return nullptr;
}

}  // namespace

std::optional<MetaTypeColumn> columnTypeOf(const arrow::DataType& type) {
  const TypeLine* line =
      type.id() == Type::DICTIONARY
          ? lineOf(static_cast<const arrow::DictionaryType&>(type).value_type()->id())
          : lineOf(type.id());
  return line == nullptr ? std::nullopt : std::optional(line->column);
}

std::optional<BadValue> convertArray(const arrow::Array& array, ValueColumn& column) {
  if (array.type_id() != Type::DICTIONARY) {
    return lineOf(array.type_id())->fill(array, array, Positions(), column);
  }
  const auto& coded = static_cast<const arrow::DictionaryArray&>(array);
  const arrow::Array& values = *coded.dictionary();
  return lineOf(values.type_id())->fill(array, values, Positions{&coded}, column);
}

}  // namespace kelvarin
