#include "host/tables/arrow_formats/arrow_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "arrow/array.h"
#include "arrow/util/float16.h"
#include "host/tables/arrow/held_numbers.h"
#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/arrow_formats/decimal_text.h"

namespace kelvarin {

namespace {

using arrow::Type;

BatchColumn columnOf(const ColumnMemory<double>& numbers) {
  return BatchColumn::ofNumbers(numbers.owner, numbers.values);
}

BatchColumn columnOf(const ColumnMemory<std::uint32_t>& keys) {
  return BatchColumn::ofKeys(keys.owner, keys.values);
}

// `read(position, value)` is false where the column cannot hold the value, whose text is
// `textAt(position)`.
template <typename Value, typename Read, typename TextAt>
ConvertedArray converted(const ArraySource& source, Value missing, ColumnTally& tally, Read read,
                         TextAt textAt) {
  const ColumnMemory<Value> memory(static_cast<std::size_t>(source.rowCount()));
  Value* values = memory.values;
  const bool isPlain = source.isPlain();
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    if (!isPlain && source.isMissing(row)) {
      values[row] = missing;
      continue;
    }
    const std::int64_t position = isPlain ? row : source.positionOf(row);
    if (read(position, values[row])) [[likely]] {
      continue;
    }
    if (!tally.takesAsMissing(row)) {
      return {columnOf(memory), BadValue{row, textAt(position)}};
    }
    values[row] = missing;
  }
  return {columnOf(memory), std::nullopt};
}

template <typename Read, typename TextAt>
ConvertedArray convertedNumbers(const ArraySource& source, ColumnTally& tally, Read read,
                                TextAt textAt) {
  return converted<double>(source, kNullNumber, tally, read, textAt);
}

// Of values that always are numbers.
template <typename NumberAt>
ConvertedArray heldNumbers(const ArraySource& source, ColumnTally& tally, NumberAt numberAt) {
  return convertedNumbers(
      source, tally,
      [&](std::int64_t position, double& number) {
        number = presentNumber(numberAt(position));
        return true;
      },
      [](std::int64_t) { return std::string(); });
}

template <typename Array>
ConvertedArray numbersOfIntegers(const ArraySource& source, ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  if (source.isPlain() && areHeldByNumbers(raw, source.rowCount())) {
    const ColumnMemory<double> memory(static_cast<std::size_t>(source.rowCount()));
    std::copy_n(raw, source.rowCount(), memory.values);
    return {columnOf(memory), std::nullopt};
  }
  return convertedNumbers(
      source, tally,
      [raw](std::int64_t at, double& number) { return integerAsNumber(raw[at], number); },
      [raw](std::int64_t at) { return std::to_string(raw[at]); });
}

template <typename Array>
ConvertedArray keysOfIntegers(const ArraySource& source, ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return converted<std::uint32_t>(
      source, kNullKey, tally,
      [raw](std::int64_t at, std::uint32_t& key) {
        key = static_cast<std::uint32_t>(raw[at]);
        return std::in_range<std::uint32_t>(raw[at]) && !isNullKey(key);
      },
      [raw](std::int64_t at) { return std::to_string(raw[at]); });
}

// The buffer of an array's values, which may begin before the first one.
std::shared_ptr<const void> bufferOf(const arrow::Array& array) {
  return array.data()->buffers[1];
}

ConvertedArray keysOfKeys(const ArraySource& source, ColumnTally& tally) {
  const auto* raw = static_cast<const arrow::UInt32Array&>(source.values).raw_values();
  if (source.isPlain() && std::none_of(raw, raw + source.rowCount(), isNullKey)) {
    return {BatchColumn::ofKeys(bufferOf(source.values), raw), std::nullopt};
  }
  return keysOfIntegers<arrow::UInt32Array>(source, tally);
}

template <typename Array>
ConvertedArray numbersOfFloats(const ArraySource& source, ColumnTally& tally) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return heldNumbers(source, tally,
                     [raw](std::int64_t at) { return static_cast<double>(raw[at]); });
}

ConvertedArray numbersOfDoubles(const ArraySource& source, ColumnTally& tally) {
  const double* raw = static_cast<const arrow::DoubleArray&>(source.values).raw_values();
  const auto isNaN = [](double number) { return std::isnan(number); };
  if (source.isPlain() && std::none_of(raw, raw + source.rowCount(), isNaN)) {
    return {BatchColumn::ofNumbers(bufferOf(source.values), raw), std::nullopt};
  }
  return numbersOfFloats<arrow::DoubleArray>(source, tally);
}

ConvertedArray numbersOfHalfFloats(const ArraySource& source, ColumnTally& tally) {
  const auto& halves = static_cast<const arrow::HalfFloatArray&>(source.values);
  return heldNumbers(source, tally, [&halves](std::int64_t at) {
    return arrow::util::Float16::FromBits(halves.Value(at)).ToDouble();
  });
}

ConvertedArray numbersOfBooleans(const ArraySource& source, ColumnTally& tally) {
  const auto& booleans = static_cast<const arrow::BooleanArray&>(source.values);
  return heldNumbers(source, tally,
                     [&booleans](std::int64_t at) { return booleans.Value(at) ? 1.0 : 0.0; });
}

// Through the decimal's text, so that it is rounded once. Doubles from 2^53 on are whole numbers,
// of which the decimal must be one.
template <typename Array>
ConvertedArray numbersOfDecimals(const ArraySource& source, ColumnTally& tally) {
  constexpr double kFirstWithoutDecimals = 0x1p53;
  const DecimalTexts<Array> texts(source.values);
  return convertedNumbers(
      source, tally,
      [&texts](std::int64_t at, double& number) {
        const std::string text = texts.at(at);
        std::from_chars(text.data(), text.data() + text.size(), number);
        return std::fabs(number) < kFirstWithoutDecimals ||
               fmt::format("{:.{}f}", number, texts.decimals()) == text;
      },
      [&texts](std::int64_t at) { return texts.at(at); });
}

}  // namespace

ArrayConversion numberConversionOf(Type::type type) {
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
      return numbersOfDoubles;
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

ArrayConversion keyConversionOf(Type::type type) {
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
      return keysOfKeys;
    case Type::UINT64:
      return keysOfIntegers<arrow::UInt64Array>;
    default:
      return nullptr;
  }
}

}  // namespace kelvarin
