#include "host/tables/arrow_formats/arrow_numbers.h"

#include <charconv>
#include <cmath>
#include <concepts>
#include <utility>

#include <fmt/format.h>

#include "arrow/array.h"
#include "arrow/util/float16.h"
#include "host/tables/arrow_formats/decimal_text.h"

namespace kelvarin {

namespace {

using arrow::Type;

// A number of a file, never the bits that mean missing.
double presentNumber(double number) {
  return std::isnan(number) ? kNotANumber : number;
}

// `read(position, value)` is false where the column cannot hold the value, whose text is
// `textAt(position)`.
template <typename Value, typename Read, typename TextAt>
std::optional<BadValue> fill(const ArraySource& source, Value* values, Value missing,
                             ColumnTally& tally, Read read, TextAt textAt) {
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    if (source.isMissing(row)) {
      values[row] = missing;
      continue;
    }
    const std::int64_t position = source.positionOf(row);
    if (read(position, values[row])) [[likely]] {
      continue;
    }
    if (!tally.takesAsMissing(row)) {
      return BadValue{row, textAt(position)};
    }
    values[row] = missing;
  }
  return std::nullopt;
}

template <typename Read, typename TextAt>
std::optional<BadValue> fillNumbers(const ArraySource& source, ValueColumn& column,
                                    ColumnTally& tally, Read read, TextAt textAt) {
  double* numbers = column.replaceNumbers(static_cast<std::size_t>(source.rowCount()));
  return fill(source, numbers, kNullNumber, tally, read, textAt);
}

// Of values that always are numbers.
template <typename NumberAt>
std::optional<BadValue> fillHeldNumbers(const ArraySource& source, ValueColumn& column,
                                        ColumnTally& tally, NumberAt numberAt) {
  return fillNumbers(
      source, column, tally,
      [&](std::int64_t position, double& number) {
        number = presentNumber(numberAt(position));
        return true;
      },
      [](std::int64_t) { return std::string(); });
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
std::optional<BadValue> numbersOfIntegers(const ArraySource& source, ValueColumn& column,
                                          ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return fillNumbers(
      source, column, tally,
      [raw](std::int64_t at, double& number) { return integerAsNumber(raw[at], number); },
      [raw](std::int64_t at) { return std::to_string(raw[at]); });
}

template <typename Array>
std::optional<BadValue> keysOfIntegers(const ArraySource& source, ValueColumn& column,
                                       ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  std::uint32_t* keys = column.replaceKeys(static_cast<std::size_t>(source.rowCount()));
  return fill(
      source, keys, kNullKey, tally,
      [raw](std::int64_t at, std::uint32_t& key) {
        key = static_cast<std::uint32_t>(raw[at]);
        return std::in_range<std::uint32_t>(raw[at]) && !isNullKey(key);
      },
      [raw](std::int64_t at) { return std::to_string(raw[at]); });
}

template <typename Array>
std::optional<BadValue> numbersOfFloats(const ArraySource& source, ValueColumn& column,
                                        ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return fillHeldNumbers(source, column, tally,
                         [raw](std::int64_t at) { return static_cast<double>(raw[at]); });
}

std::optional<BadValue> numbersOfHalfFloats(const ArraySource& source, ValueColumn& column,
                                            ColumnTally& tally) {
  const auto& halves = static_cast<const arrow::HalfFloatArray&>(source.values);
  return fillHeldNumbers(source, column, tally, [&halves](std::int64_t at) {
    return arrow::util::Float16::FromBits(halves.Value(at)).ToDouble();
  });
}

std::optional<BadValue> numbersOfBooleans(const ArraySource& source, ValueColumn& column,
                                          ColumnTally& tally) {
  const auto& booleans = static_cast<const arrow::BooleanArray&>(source.values);
  return fillHeldNumbers(source, column, tally,
                         [&booleans](std::int64_t at) { return booleans.Value(at) ? 1.0 : 0.0; });
}

// Through the decimal's text, so that it is rounded once. Doubles from 2^53 on are whole numbers,
// of which the decimal must be one.
template <typename Array>
std::optional<BadValue> numbersOfDecimals(const ArraySource& source, ValueColumn& column,
                                          ColumnTally& tally) {
  constexpr double kFirstWithoutDecimals = 0x1p53;
  const DecimalTexts<Array> texts(source.values);
  return fillNumbers(
      source, column, tally,
      [&texts](std::int64_t at, double& number) {
        const std::string text = texts.at(at);
        std::from_chars(text.data(), text.data() + text.size(), number);
        return std::fabs(number) < kFirstWithoutDecimals ||
               fmt::format("{:.{}f}", number, texts.decimals()) == text;
      },
      [&texts](std::int64_t at) { return texts.at(at); });
}

}  // namespace

ArrayFill numberFillOf(Type::type type) {
  switch (type) {
    case Type::BOOL:
      return numbersOfBooleans;
    case Type::INT8:
      return numbersOfIntegers<arrow::Int8Array>;
    case Type::INT16:
      return numbersOfIntegers<arrow::Int16Array>;
    case Type::INT32:
      return numbersOfIntegers<arrow::Int32Array>;
    case Type::INT64:
      return numbersOfIntegers<arrow::Int64Array>;
    case Type::UINT8:
      return numbersOfIntegers<arrow::UInt8Array>;
    case Type::UINT16:
      return numbersOfIntegers<arrow::UInt16Array>;
    case Type::UINT32:
      return numbersOfIntegers<arrow::UInt32Array>;
    case Type::UINT64:
      return numbersOfIntegers<arrow::UInt64Array>;
    case Type::HALF_FLOAT:
      return numbersOfHalfFloats;
    case Type::FLOAT:
      return numbersOfFloats<arrow::FloatArray>;
    case Type::DOUBLE:
      return numbersOfFloats<arrow::DoubleArray>;
    case Type::DECIMAL32:
      return numbersOfDecimals<arrow::Decimal32Array>;
    case Type::DECIMAL64:
      return numbersOfDecimals<arrow::Decimal64Array>;
    case Type::DECIMAL128:
      return numbersOfDecimals<arrow::Decimal128Array>;
    case Type::DECIMAL256:
      return numbersOfDecimals<arrow::Decimal256Array>;
    default:
      return nullptr;
  }
}

ArrayFill keyFillOf(Type::type type) {
  switch (type) {
    case Type::INT8:
      return keysOfIntegers<arrow::Int8Array>;
    case Type::INT16:
      return keysOfIntegers<arrow::Int16Array>;
    case Type::INT32:
      return keysOfIntegers<arrow::Int32Array>;
    case Type::INT64:
      return keysOfIntegers<arrow::Int64Array>;
    case Type::UINT8:
      return keysOfIntegers<arrow::UInt8Array>;
    case Type::UINT16:
      return keysOfIntegers<arrow::UInt16Array>;
    case Type::UINT32:
      return keysOfIntegers<arrow::UInt32Array>;
    case Type::UINT64:
      return keysOfIntegers<arrow::UInt64Array>;
    default:
      return nullptr;
  }
}

}  // namespace kelvarin
