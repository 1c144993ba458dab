#include "host/tables/arrow_formats/arrow_texts.h"

#include <charconv>
#include <vector>

#include "arrow/array.h"
#include "host/tables/arrow_formats/decimal_text.h"
#include "host/tables/arrow_formats/dictionary_texts.h"

namespace kelvarin {

namespace {

using arrow::Type;

static_assert(arrow::TimeUnit::SECOND == 0 && arrow::TimeUnit::NANO == 3, "decimals of a tick");

// `view` returns the bytes of a value; they are valid until it is called again. The bytes of all
// values are expected to be about `size`.
template <typename View>
BatchColumn textsOfRows(const ArraySource& source, std::size_t size, View view) {
  const auto rowCount = static_cast<std::size_t>(source.rowCount());
  const ColumnMemory<std::uint32_t> positions(rowCount);
  CountedTexts texts(size + 4 * rowCount);
  const bool isPlain = source.isPlain();
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    positions.values[row] = !isPlain && source.isMissing(row)
                                ? texts.null()
                                : texts.add(view(isPlain ? row : source.positionOf(row)));
  }
  return texts.column(positions);
}

template <typename View>
void makeTexts(const arrow::Array& values, View view, DictionaryTexts& made) {
  const auto count = static_cast<std::size_t>(values.length());
  made.values = arrow::MakeArray(values.data());
  made.texts.emplace(16 * count);
  made.positions.resize(count);
  made.nullPosition = made.texts->null();
  for (std::size_t i = 0; i < count; ++i) {
    const auto at = static_cast<std::int64_t>(i);
    made.positions[i] = values.IsNull(at) ? made.nullPosition : made.texts->add(view(at));
  }
}

// Calls visit(codes) with the codes of the rows in their type.
template <typename Visit>
void visitCodes(const arrow::Array& codes, Visit visit) {
  switch (codes.type_id()) {
    case Type::INT8:
      return visit(static_cast<const arrow::Int8Array&>(codes).raw_values());
    case Type::INT16:
      return visit(static_cast<const arrow::Int16Array&>(codes).raw_values());
    case Type::INT32:
      return visit(static_cast<const arrow::Int32Array&>(codes).raw_values());
    case Type::INT64:
      return visit(static_cast<const arrow::Int64Array&>(codes).raw_values());
    case Type::UINT8:
      return visit(static_cast<const arrow::UInt8Array&>(codes).raw_values());
    case Type::UINT16:
      return visit(static_cast<const arrow::UInt16Array&>(codes).raw_values());
    case Type::UINT32:
      return visit(static_cast<const arrow::UInt32Array&>(codes).raw_values());
    default:
      return visit(static_cast<const arrow::UInt64Array&>(codes).raw_values());
  }
}

// Rows with the same code share a text.
template <typename View>
BatchColumn textsOfDictionary(const ArraySource& source, View view) {
  DictionaryTexts& known = *source.texts;
  if (known.values == nullptr || !known.values->Equals(source.values)) {
    makeTexts(source.values, view, known);
  }
  const ColumnMemory<std::uint32_t> positions(static_cast<std::size_t>(source.rowCount()));
  const bool isEveryRowPresent = source.rows.null_count() == 0;
  visitCodes(*source.dictionary->indices(), [&](const auto* codes) {
    for (std::int64_t row = 0; row < source.rowCount(); ++row) {
      positions.values[row] = isEveryRowPresent || source.rows.IsValid(row)
                                  ? known.positions[static_cast<std::size_t>(codes[row])]
                                  : known.nullPosition;
    }
  });
  return known.texts->column(positions);
}

template <typename View>
ConvertedArray convertedTexts(const ArraySource& source, std::size_t size, View view) {
  const bool isShort = source.dictionary != nullptr && source.values.length() <= source.rowCount();
  return {isShort ? textsOfDictionary(source, view) : textsOfRows(source, size, view),
          std::nullopt};
}

template <typename Array>
ConvertedArray textsOfViews(const ArraySource& source, ColumnTally&) {
  const auto& texts = static_cast<const Array&>(source.values);
  std::size_t size = 0;
  if constexpr (requires { texts.total_values_length(); }) {
    size = static_cast<std::size_t>(texts.total_values_length());
  }
  return convertedTexts(source, size,
                        [&](std::int64_t at) -> std::string_view { return texts.GetView(at); });
}

// `append(text, position)` makes the text of a value, of about `size` bytes.
template <typename Append>
ConvertedArray madeTexts(const ArraySource& source, std::size_t size, Append append) {
  std::string text;
  return convertedTexts(source, size * static_cast<std::size_t>(source.rowCount()),
                        [&](std::int64_t at) -> std::string_view {
                          text.clear();
                          append(text, at);
                          return text;
                        });
}

template <typename Array>
ConvertedArray textsOfIntegers(const ArraySource& source, ColumnTally&) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return madeTexts(source, 8, [raw](std::string& text, std::int64_t at) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, raw[at]).ptr;
    text.assign(digits, end);
  });
}

template <typename Array>
ConvertedArray textsOfDecimals(const ArraySource& source, ColumnTally&) {
  const DecimalTexts<Array> decimals(source.values);
  return madeTexts(source, 12,
                   [&decimals](std::string& text, std::int64_t at) { text = decimals.at(at); });
}

ConvertedArray textsOfDays(const ArraySource& source, ColumnTally&) {
  const auto& dates = static_cast<const arrow::Date32Array&>(source.values);
  return madeTexts(source, 10, [&](std::string& text, std::int64_t at) {
    appendIsoDate(text, dates.Value(at));
  });
}

ConvertedArray textsOfMillisecondDates(const ArraySource& source, ColumnTally&) {
  const auto& dates = static_cast<const arrow::Date64Array&>(source.values);
  return madeTexts(source, 10, [&](std::string& text, std::int64_t at) {
    appendIsoDate(text, daysOfMilliseconds(dates.Value(at)));
  });
}

void countFinerTimes(const ArraySource& source, std::int64_t ticksPerMillisecond,
                     ColumnTally& tally) {
  const auto* times = static_cast<const arrow::TimestampArray&>(source.values).raw_values();
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    if (!source.isMissing(row) && times[source.positionOf(row)] % ticksPerMillisecond != 0) {
      tally.finerTimes.add(tally.rowsBefore + row);
    }
  }
}

ConvertedArray textsOfTimestamps(const ArraySource& source, ColumnTally& tally) {
  const TimestampForm form =
      formOf(static_cast<const arrow::TimestampType&>(*source.values.type()));
  if (form.decimals > 3) {
    countFinerTimes(source, form.decimals == 6 ? 1'000 : 1'000'000, tally);
  }
  const auto& times = static_cast<const arrow::TimestampArray&>(source.values);
  return madeTexts(source, 30, [&](std::string& text, std::int64_t at) {
    appendIsoTimestamp(text, times.Value(at), form.decimals, form.isUtc);
  });
}

}  // namespace

TimestampForm formOf(const arrow::TimestampType& type) {
  return {3 * static_cast<int>(type.unit()), !type.timezone().empty()};
}

std::int64_t daysOfMilliseconds(std::int64_t milliseconds) {
  constexpr std::int64_t kMillisecondsPerDay = 86400000;
  const bool roundsUp = milliseconds < 0 && milliseconds % kMillisecondsPerDay != 0;
  return milliseconds / kMillisecondsPerDay - (roundsUp ? 1 : 0);
}

ArrayConversion textConversionOf(Type::type type) {
  switch (type) {
    case Type::STRING:
      return textsOfViews<arrow::StringArray>;
    case Type::LARGE_STRING:
      return textsOfViews<arrow::LargeStringArray>;
    case Type::STRING_VIEW:
      return textsOfViews<arrow::StringViewArray>;
    case Type::DATE32:
      return textsOfDays;
    case Type::DATE64:
      return textsOfMillisecondDates;
    case Type::TIMESTAMP:
      return textsOfTimestamps;
    case Type::INT8:
      return textsOfIntegers<arrow::Int8Array>;
    case Type::INT16:
      return textsOfIntegers<arrow::Int16Array>;
    case Type::INT32:
      return textsOfIntegers<arrow::Int32Array>;
    case Type::INT64:
      return textsOfIntegers<arrow::Int64Array>;
    case Type::UINT8:
      return textsOfIntegers<arrow::UInt8Array>;
    case Type::UINT16:
      return textsOfIntegers<arrow::UInt16Array>;
    case Type::UINT32:
      return textsOfIntegers<arrow::UInt32Array>;
    case Type::UINT64:
      return textsOfIntegers<arrow::UInt64Array>;
    case Type::DECIMAL32:
      return textsOfDecimals<arrow::Decimal32Array>;
    case Type::DECIMAL64:
      return textsOfDecimals<arrow::Decimal64Array>;
    case Type::DECIMAL128:
      return textsOfDecimals<arrow::Decimal128Array>;
    case Type::DECIMAL256:
      return textsOfDecimals<arrow::Decimal256Array>;
    default:
      return nullptr;
  }
}

}  // namespace kelvarin
