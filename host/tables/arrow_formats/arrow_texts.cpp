#include "host/tables/arrow_formats/arrow_texts.h"

#include <charconv>

#include "arrow/array.h"
#include "host/tables/arrow_formats/decimal_text.h"
#include "host/tables/arrow_formats/iso_time.h"

namespace kelvarin {

namespace {

using arrow::Type;

static_assert(arrow::TimeUnit::SECOND == 0 && arrow::TimeUnit::NANO == 3, "decimals of a tick");

// `view` returns the bytes of a value; they are valid until it is called again.
template <typename View>
void fillTexts(const ArraySource& source, ValueColumn& column, View view) {
  std::size_t size = 0;
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    size += 4 + (source.isMissing(row) ? 0 : view(source.positionOf(row)).size());
  }
  unsigned char* next = column.replace(size);
  for (std::int64_t row = 0; row < source.rowCount(); ++row) {
    if (source.isMissing(row)) {
      next = putNullText(next);
      continue;
    }
    const std::string_view text = view(source.positionOf(row));
    next = putText(next, text.data(), text.size());
  }
}

template <typename Array>
std::optional<BadValue> textsOfViews(const ArraySource& source, ValueColumn& column, ColumnTally&) {
  const auto& texts = static_cast<const Array&>(source.values);
  fillTexts(source, column, [&](std::int64_t at) -> std::string_view { return texts.GetView(at); });
  return std::nullopt;
}

// `append(text, position)` makes the text of a value.
template <typename Append>
std::optional<BadValue> fillMadeTexts(const ArraySource& source, ValueColumn& column,
                                      Append append) {
  std::string text;
  fillTexts(source, column, [&](std::int64_t at) -> std::string_view {
    text.clear();
    append(text, at);
    return text;
  });
  return std::nullopt;
}

template <typename Array>
std::optional<BadValue> textsOfIntegers(const ArraySource& source, ValueColumn& column,
                                        ColumnTally&) {
  const auto* raw = static_cast<const Array&>(source.values).raw_values();
  return fillMadeTexts(source, column, [raw](std::string& text, std::int64_t at) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, raw[at]).ptr;
    text.assign(digits, end);
  });
}

template <typename Array>
std::optional<BadValue> textsOfDecimals(const ArraySource& source, ValueColumn& column,
                                        ColumnTally&) {
  const DecimalTexts<Array> decimals(source.values);
  return fillMadeTexts(source, column,
                       [&decimals](std::string& text, std::int64_t at) { text = decimals.at(at); });
}

std::optional<BadValue> textsOfDays(const ArraySource& source, ValueColumn& column, ColumnTally&) {
  const auto& dates = static_cast<const arrow::Date32Array&>(source.values);
  return fillMadeTexts(source, column, [&](std::string& text, std::int64_t at) {
    appendIsoDate(text, dates.Value(at));
  });
}

std::optional<BadValue> textsOfMillisecondDates(const ArraySource& source, ValueColumn& column,
                                                ColumnTally&) {
  constexpr std::int64_t kMillisecondsPerDay = 86400000;
  const auto& dates = static_cast<const arrow::Date64Array&>(source.values);
  return fillMadeTexts(source, column, [&](std::string& text, std::int64_t at) {
    const std::int64_t milliseconds = dates.Value(at);
    const bool roundsUp = milliseconds < 0 && milliseconds % kMillisecondsPerDay != 0;
    appendIsoDate(text, milliseconds / kMillisecondsPerDay - (roundsUp ? 1 : 0));
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

std::optional<BadValue> textsOfTimestamps(const ArraySource& source, ValueColumn& column,
                                          ColumnTally& tally) {
  const auto form =
      TimestampForm::of(static_cast<const arrow::TimestampType&>(*source.values.type()));
  if (form.decimals > 3) {
    countFinerTimes(source, form.decimals == 6 ? 1'000 : 1'000'000, tally);
  }
  const auto& times = static_cast<const arrow::TimestampArray&>(source.values);
  return fillMadeTexts(source, column, [&](std::string& text, std::int64_t at) {
    appendIsoTimestamp(text, times.Value(at), form.decimals, form.isUtc);
  });
}

}  // namespace

TimestampForm TimestampForm::of(const arrow::TimestampType& type) {
  return {3 * static_cast<int>(type.unit()), !type.timezone().empty()};
}

QString TimestampForm::example() const {
  std::int64_t ticks = 1706745599;  // 2024-01-31 23:59:59
  for (int digit = 1; digit <= decimals; ++digit) {
    ticks = 10 * ticks + digit;
  }
  std::string text;
  appendIsoTimestamp(text, ticks, decimals, isUtc);
  return QString::fromStdString(text);
}

QString TimestampForm::dateFormat() const {
  return QStringLiteral("yyyy-MM-ddThh:mm:ss") +
         (decimals > 0 ? QStringLiteral(".zzz") : QString()) +
         (isUtc ? QStringLiteral("Z") : QString());
}

ArrayFill textFillOf(Type::type type) {
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
