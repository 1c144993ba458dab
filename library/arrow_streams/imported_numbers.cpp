#include <charconv>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "host/tables/arrow/held_numbers.h"
#include "host/tables/files/column_memory.h"
#include "library/arrow_streams/imported_values.h"
#include "library/arrow_streams/value_search.h"

namespace kelvarin {

namespace {

// `read(position, value)` is false where the column cannot hold the value, whose text is
// `textAt(position)`.
template <typename Value, typename Read, typename TextAt>
ConvertedArray converted(const ArrayRows& rows, ColumnMemory memory, Value* values, Value missing,
                         ColumnTally& tally, Read read, TextAt textAt) {
  const bool isPlain = rows.isPlain();
  for (std::int64_t row = 0; row < rows.rows.count; ++row) {
    if (!isPlain && rows.isMissing(row)) {
      values[row] = missing;
      continue;
    }
    const std::int64_t position = rows.positionOf(row);
    if (read(position, values[row])) [[likely]] {
      continue;
    }
    if (!tally.takesAsMissing(row)) {
      return {memory.column(), BadValue{row, textAt(position)}};
    }
    values[row] = missing;
  }
  return {memory.column(), std::nullopt};
}

template <typename Read, typename TextAt>
ConvertedArray convertedNumbers(const ArrayRows& rows, ColumnTally& tally, Read read,
                                TextAt textAt) {
  ColumnMemory memory(MetaTypeColumn::number, static_cast<std::size_t>(rows.rows.count));
  return converted<double>(rows, memory, memory.numbers(), kNullNumber, tally, read, textAt);
}

// Of values that always are numbers.
template <typename NumberAt>
ConvertedArray heldNumbers(const ArrayRows& rows, ColumnTally& tally, NumberAt numberAt) {
  return convertedNumbers(
      rows, tally,
      [&](std::int64_t position, double& number) {
        number = presentNumber(numberAt(position));
        return true;
      },
      [](std::int64_t) { return std::string(); });
}

template <typename Integer>
ConvertedArray numbersOfIntegers(const ArrayRows& rows, ColumnTally& tally) {
  return convertedNumbers(
      rows, tally,
      [&](std::int64_t at, double& number) {
        return integerAsNumber(rows.values.at<Integer>(at), number);
      },
      [&](std::int64_t at) { return std::to_string(rows.values.at<Integer>(at)); });
}

BatchColumn complete(BatchColumn column) {
  column.setComplete();
  return column;
}

ConvertedArray numbersOfDoubles(const ArrayRows& rows, ColumnTally& tally,
                                const std::shared_ptr<const void>& owner) {
  const unsigned char* bytes = rows.rows.bytesAt(0, sizeof(double));
  if (rows.isPlain() && isAligned(bytes, sizeof(double))) {
    const auto* numbers = reinterpret_cast<const double*>(bytes);
    if (!hasNaN(numbers, static_cast<std::size_t>(rows.rows.count))) {
      return {complete(BatchColumn::ofNumbers(owner, numbers)), std::nullopt};
    }
  }
  return heldNumbers(rows, tally, [&](std::int64_t at) { return rows.values.at<double>(at); });
}

// Sign, 5 bits of exponent, 10 of fraction.
double numberOfHalf(std::uint16_t bits) {
  const int exponent = bits >> 10 & 31;
  const int fraction = bits & 1023;
  double number =
      std::ldexp(exponent == 0 ? fraction : fraction + 1024, exponent == 0 ? -24 : exponent - 25);
  if (exponent == 31) {
    number = fraction == 0 ? HUGE_VAL : kNotANumber;
  }
  return (bits & 0x8000) != 0 ? -number : number;
}

// Through the decimal's text, so that it is rounded once. Doubles from 2^53 on are whole numbers,
// of which the decimal must be one.
ConvertedArray numbersOfDecimals(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally) {
  constexpr double kFirstWithoutDecimals = 0x1p53;
  const auto textAt = [&](std::int64_t at) {
    const auto width = static_cast<std::size_t>(type.decimalBits / 8);
    return decimalText(rows.values.bytesAt(at, width), type.decimalBits, type.scale);
  };
  return convertedNumbers(
      rows, tally,
      [&](std::int64_t at, double& number) {
        const std::string text = textAt(at);
        std::from_chars(text.data(), text.data() + text.size(), number);
        return std::fabs(number) < kFirstWithoutDecimals ||
               fmt::format("{:.{}f}", number, std::max(type.scale, 0)) == text;
      },
      textAt);
}

template <typename Integer>
ConvertedArray keysOfIntegers(const ArrayRows& rows, ColumnTally& tally) {
  ColumnMemory memory(MetaTypeColumn::key, static_cast<std::size_t>(rows.rows.count));
  return converted<std::uint32_t>(
      rows, memory, memory.keys(), kNullKey, tally,
      [&](std::int64_t at, std::uint32_t& key) {
        const auto integer = rows.values.at<Integer>(at);
        key = static_cast<std::uint32_t>(integer);
        if constexpr (std::is_signed_v<Integer>) {
          return integer >= 0 && static_cast<std::uint64_t>(integer) < kFirstNullKey;
        } else {
          return integer < kFirstNullKey;
        }
      },
      [&](std::int64_t at) { return std::to_string(rows.values.at<Integer>(at)); });
}

}  // namespace

ConvertedArray importNumbers(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                             const std::shared_ptr<const void>& owner) {
  switch (type.kind) {
    case ArrowKind::boolean:
      return heldNumbers(rows, tally,
                         [&](std::int64_t at) { return rows.values.bitAt(at) ? 1.0 : 0.0; });
    case ArrowKind::halfFloat:
      return heldNumbers(rows, tally, [&](std::int64_t at) {
        return numberOfHalf(rows.values.at<std::uint16_t>(at));
      });
    case ArrowKind::float32:
      return heldNumbers(rows, tally, [&](std::int64_t at) {
        return static_cast<double>(rows.values.at<float>(at));
      });
    case ArrowKind::float64:
      return numbersOfDoubles(rows, tally, owner);
    case ArrowKind::decimal:
      return numbersOfDecimals(rows, type, tally);
    default:
      return withIntegerOf(type.kind, [&](auto integer) {
        return numbersOfIntegers<decltype(integer)>(rows, tally);
      });
  }
}

ConvertedArray importKeys(const ArrayRows& rows, const ArrowType& type, ColumnTally& tally,
                          const std::shared_ptr<const void>& owner) {
  const unsigned char* bytes = rows.rows.bytesAt(0, sizeof(std::uint32_t));
  if (type.kind == ArrowKind::uint32 && rows.isPlain() && isAligned(bytes, sizeof(std::uint32_t))) {
    const auto* keys = reinterpret_cast<const std::uint32_t*>(bytes);
    if (!hasNullKey(keys, static_cast<std::size_t>(rows.rows.count))) {
      return {complete(BatchColumn::ofKeys(owner, keys)), std::nullopt};
    }
  }
  return withIntegerOf(
      type.kind, [&](auto integer) { return keysOfIntegers<decltype(integer)>(rows, tally); });
}

}  // namespace kelvarin
