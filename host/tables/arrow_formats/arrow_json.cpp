#include "host/tables/arrow_formats/arrow_json.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

#include "arrow/array.h"
#include "arrow/extension_type.h"
#include "arrow/util/base64.h"
#include "arrow/util/float16.h"
#include "arrow/util/ree_util.h"
#include "host/tables/arrow_formats/arrow_texts.h"
#include "host/tables/arrow_formats/counted_texts.h"
#include "host/tables/arrow_formats/decimal_text.h"

namespace kelvarin {

namespace {

using arrow::Type;

constexpr std::string_view kNull = "null";

void appendQuoted(std::string& text, std::string_view value) {
  text += '"';
  std::size_t copied = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char c = value[at];
    const bool isControl = static_cast<unsigned char>(c) < 0x20;
    if (!isControl && c != '"' && c != '\\') {
      continue;
    }
    text += value.substr(copied, at - copied);
    copied = at + 1;
    if (isControl) {
      fmt::format_to(std::back_inserter(text), FMT_COMPILE("\\u{:04x}"), static_cast<unsigned>(c));
    } else {
      text += '\\';
      text += c;
    }
  }
  text += value.substr(copied);
  text += '"';
}

template <typename Number>
void appendNumber(std::string& text, Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (!std::isfinite(number)) {
      text += std::isnan(number) ? "\"NaN\"" : number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
      return;
    }
  }
  char digits[48];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

// Seconds of so many decimals, all of which are written.
void appendSeconds(std::string& text, std::int64_t ticks, int decimals) {
  std::uint64_t ticksInSecond = 1;
  for (int i = 0; i < decimals; ++i) {
    ticksInSecond *= 10;
  }
  const std::uint64_t size =
      ticks < 0 ? 0 - static_cast<std::uint64_t>(ticks) : static_cast<std::uint64_t>(ticks);
  fmt::format_to(std::back_inserter(text), FMT_COMPILE("{}{}"), ticks < 0 ? "-" : "",
                 size / ticksInSecond);
  if (decimals > 0) {
    fmt::format_to(std::back_inserter(text), ".{:0{}}", size % ticksInSecond, decimals);
  }
}

// Of a time unit.
int decimalsOf(arrow::TimeUnit::type unit) {
  return 3 * static_cast<int>(unit);
}

void appendTimeOfDay(std::string& text, std::int64_t ticks, arrow::TimeUnit::type unit) {
  std::int64_t ticksInMinute = 60;
  for (int i = 0; i < decimalsOf(unit); ++i) {
    ticksInMinute *= 10;
  }
  const std::int64_t minutes = ticks / ticksInMinute;
  fmt::format_to(std::back_inserter(text), FMT_COMPILE("\"{:02}:{:02}:"), minutes / 60,
                 minutes % 60);
  const std::size_t secondsAt = text.size();
  appendSeconds(text, ticks % ticksInMinute, decimalsOf(unit));
  const bool isShort = text.size() - secondsAt < 2 || text[secondsAt + 1] == '.';
  if (isShort) {
    text.insert(secondsAt, 1, '0');
  }
  text += '"';
}

void appendDuration(std::string& text, std::int64_t ticks, int decimals) {
  text += "\"PT";
  appendSeconds(text, ticks, decimals);
  text += "S\"";
}

// A scale that no writer means would make millions of zeros.
template <typename Array>
void appendDecimal(std::string& text, const arrow::Array& values, std::int64_t at) {
  const int scale = static_cast<const arrow::DecimalType&>(*values.type()).scale();
  if (std::abs(scale) <= arrow::Decimal256Type::kMaxPrecision) {
    text += DecimalTexts<Array>(values).at(at);
    return;
  }
  using Decimal = typename DecimalOf<Array>::Type;
  const auto& decimals = static_cast<const Array&>(values);
  text += Decimal(decimals.GetValue(at)).ToIntegerString();
  fmt::format_to(std::back_inserter(text), FMT_COMPILE("e{}"), -static_cast<std::int64_t>(scale));
}

// A value where it stands: within what dictionaries, runs and types of other programs are made of.
struct ValuePosition {
  const arrow::Array* array;
  std::int64_t at;
};

ValuePosition storedPosition(const arrow::Array& array, std::int64_t at) {
  const bool isNull = array.IsNull(at);
  switch (isNull ? Type::MAX_ID : array.type_id()) {
    case Type::DICTIONARY: {
      const auto& coded = static_cast<const arrow::DictionaryArray&>(array);
      return storedPosition(*coded.dictionary(), coded.GetValueIndex(at));
    }
    case Type::EXTENSION:
      return storedPosition(*static_cast<const arrow::ExtensionArray&>(array).storage(), at);
    case Type::RUN_END_ENCODED: {
      const auto& runs = static_cast<const arrow::RunEndEncodedArray&>(array);
      const arrow::ArraySpan span(*array.data());
      return storedPosition(*runs.values(),
                            arrow::ree_util::FindPhysicalIndex(span, at, array.offset()));
    }
    case Type::SPARSE_UNION: {
      const auto& values = static_cast<const arrow::SparseUnionArray&>(array);
      return storedPosition(*values.field(values.child_id(at)), at);
    }
    case Type::DENSE_UNION: {
      const auto& values = static_cast<const arrow::DenseUnionArray&>(array);
      return storedPosition(*values.field(values.child_id(at)), values.value_offset(at));
    }
    default:
      return {&array, at};
  }
}

void appendValue(std::string& text, const arrow::Array& array, std::int64_t row);

void appendList(std::string& text, const arrow::Array& values, std::int64_t begin,
                std::int64_t count) {
  text += '[';
  for (std::int64_t i = 0; i < count; ++i) {
    text += i == 0 ? "" : ",";
    appendValue(text, values, begin + i);
  }
  text += ']';
}

template <typename List>
void appendList(std::string& text, const arrow::Array& array, std::int64_t at) {
  const auto& lists = static_cast<const List&>(array);
  appendList(text, *lists.values(), lists.value_offset(at), lists.value_length(at));
}

void appendStruct(std::string& text, const arrow::Array& array, std::int64_t at) {
  const auto& structs = static_cast<const arrow::StructArray&>(array);
  text += '{';
  for (int field = 0; field < structs.num_fields(); ++field) {
    text += field == 0 ? "" : ",";
    appendQuoted(text, structs.struct_type()->field(field)->name());
    text += ':';
    appendValue(text, *structs.field(field), at);
  }
  text += '}';
}

// Names are texts, whatever the keys are.
void appendMap(std::string& text, const arrow::Array& array, std::int64_t at) {
  const auto& maps = static_cast<const arrow::MapArray&>(array);
  const std::int64_t begin = maps.value_offset(at);
  text += '{';
  std::string key;
  for (std::int64_t i = 0; i < maps.value_length(at); ++i) {
    text += i == 0 ? "" : ",";
    key.clear();
    appendValue(key, *maps.keys(), begin + i);
    if (key.starts_with('"')) {
      text += key;
    } else {
      appendQuoted(text, key);
    }
    text += ':';
    appendValue(text, *maps.items(), begin + i);
  }
  text += '}';
}

void appendInterval(std::string& text, const arrow::Array& array, std::int64_t at) {
  const auto put = [&text](auto... parts) { (text.append(parts), ...); };
  if (array.type_id() == Type::INTERVAL_MONTHS) {
    const auto months = static_cast<const arrow::MonthIntervalArray&>(array).Value(at);
    put("\"P", std::to_string(months), "M\"");
    return;
  }
  if (array.type_id() == Type::INTERVAL_DAY_TIME) {
    const auto value = static_cast<const arrow::DayTimeIntervalArray&>(array).Value(at);
    put("\"P", std::to_string(value.days), "DT");
    appendSeconds(text, value.milliseconds, 3);
  } else {
    const auto value = static_cast<const arrow::MonthDayNanoIntervalArray&>(array).Value(at);
    put("\"P", std::to_string(value.months), "M", std::to_string(value.days), "DT");
    appendSeconds(text, value.nanoseconds, 9);
  }
  put("S\"");
}

void appendTimestamp(std::string& text, const arrow::Array& array, std::int64_t at) {
  const TimestampForm form = formOf(static_cast<const arrow::TimestampType&>(*array.type()));
  text += '"';
  appendIsoTimestamp(text, static_cast<const arrow::TimestampArray&>(array).Value(at),
                     form.decimals, form.isUtc);
  text += '"';
}

void appendDate(std::string& text, std::int64_t days) {
  text += '"';
  appendIsoDate(text, days);
  text += '"';
}

void appendBytes(std::string& text, std::string_view bytes) {
  text += '"';
  text += arrow::util::base64_encode(bytes);
  text += '"';
}

template <typename Array>
void appendValueOf(std::string& text, const arrow::Array& array, std::int64_t at) {
  appendNumber(text, static_cast<const Array&>(array).Value(at));
}

template <typename Array>
std::string_view viewOf(const arrow::Array& array, std::int64_t at) {
  return static_cast<const Array&>(array).GetView(at);
}

template <typename Array>
arrow::TimeUnit::type unitOf(const arrow::Array& array) {
  return static_cast<const typename Array::TypeClass&>(*array.type()).unit();
}

// A value that is not null.
void appendPresent(std::string& text, const arrow::Array& array, std::int64_t at) {
  switch (array.type_id()) {
    case Type::BOOL:
      text += static_cast<const arrow::BooleanArray&>(array).Value(at) ? "true" : "false";
      return;
    case Type::INT8:
      return appendValueOf<arrow::Int8Array>(text, array, at);
    case Type::INT16:
      return appendValueOf<arrow::Int16Array>(text, array, at);
    case Type::INT32:
      return appendValueOf<arrow::Int32Array>(text, array, at);
    case Type::INT64:
      return appendValueOf<arrow::Int64Array>(text, array, at);
    case Type::UINT8:
      return appendValueOf<arrow::UInt8Array>(text, array, at);
    case Type::UINT16:
      return appendValueOf<arrow::UInt16Array>(text, array, at);
    case Type::UINT32:
      return appendValueOf<arrow::UInt32Array>(text, array, at);
    case Type::UINT64:
      return appendValueOf<arrow::UInt64Array>(text, array, at);
    case Type::HALF_FLOAT: {
      const auto bits = static_cast<const arrow::HalfFloatArray&>(array).Value(at);
      return appendNumber(text, arrow::util::Float16::FromBits(bits).ToFloat());
    }
    case Type::FLOAT:
      return appendValueOf<arrow::FloatArray>(text, array, at);
    case Type::DOUBLE:
      return appendValueOf<arrow::DoubleArray>(text, array, at);
    case Type::DECIMAL32:
      return appendDecimal<arrow::Decimal32Array>(text, array, at);
    case Type::DECIMAL64:
      return appendDecimal<arrow::Decimal64Array>(text, array, at);
    case Type::DECIMAL128:
      return appendDecimal<arrow::Decimal128Array>(text, array, at);
    case Type::DECIMAL256:
      return appendDecimal<arrow::Decimal256Array>(text, array, at);
    case Type::STRING:
      return appendQuoted(text, viewOf<arrow::StringArray>(array, at));
    case Type::LARGE_STRING:
      return appendQuoted(text, viewOf<arrow::LargeStringArray>(array, at));
    case Type::STRING_VIEW:
      return appendQuoted(text, viewOf<arrow::StringViewArray>(array, at));
    case Type::BINARY:
      return appendBytes(text, viewOf<arrow::BinaryArray>(array, at));
    case Type::LARGE_BINARY:
      return appendBytes(text, viewOf<arrow::LargeBinaryArray>(array, at));
    case Type::BINARY_VIEW:
      return appendBytes(text, viewOf<arrow::BinaryViewArray>(array, at));
    case Type::FIXED_SIZE_BINARY:
      return appendBytes(text, viewOf<arrow::FixedSizeBinaryArray>(array, at));
    case Type::DATE32:
      return appendDate(text, static_cast<const arrow::Date32Array&>(array).Value(at));
    case Type::DATE64:
      return appendDate(
          text, daysOfMilliseconds(static_cast<const arrow::Date64Array&>(array).Value(at)));
    case Type::TIMESTAMP:
      return appendTimestamp(text, array, at);
    case Type::TIME32:
      return appendTimeOfDay(text, static_cast<const arrow::Time32Array&>(array).Value(at),
                             unitOf<arrow::Time32Array>(array));
    case Type::TIME64:
      return appendTimeOfDay(text, static_cast<const arrow::Time64Array&>(array).Value(at),
                             unitOf<arrow::Time64Array>(array));
    case Type::DURATION:
      return appendDuration(text, static_cast<const arrow::DurationArray&>(array).Value(at),
                            decimalsOf(unitOf<arrow::DurationArray>(array)));
    case Type::INTERVAL_MONTHS:
    case Type::INTERVAL_DAY_TIME:
    case Type::INTERVAL_MONTH_DAY_NANO:
      return appendInterval(text, array, at);
    case Type::LIST:
      return appendList<arrow::ListArray>(text, array, at);
    case Type::LARGE_LIST:
      return appendList<arrow::LargeListArray>(text, array, at);
    case Type::FIXED_SIZE_LIST:
      return appendList<arrow::FixedSizeListArray>(text, array, at);
    case Type::LIST_VIEW:
      return appendList<arrow::ListViewArray>(text, array, at);
    case Type::LARGE_LIST_VIEW:
      return appendList<arrow::LargeListViewArray>(text, array, at);
    case Type::STRUCT:
      return appendStruct(text, array, at);
    case Type::MAP:
      return appendMap(text, array, at);
    default:
      text += kNull;
  }
}

void appendValue(std::string& text, const arrow::Array& array, std::int64_t row) {
  const auto [stored, at] = storedPosition(array, row);
  if (stored->IsNull(at)) {
    text += kNull;
  } else {
    appendPresent(text, *stored, at);
  }
}

}  // namespace

ConvertedArray jsonTextsOf(const arrow::Array& array) {
  constexpr std::size_t kUsualSize = 32;
  const auto rowCount = static_cast<std::size_t>(array.length());
  const ColumnMemory<std::uint32_t> positions(rowCount);
  CountedTexts texts(kUsualSize * rowCount);
  std::string text;
  for (std::size_t row = 0; row < rowCount; ++row) {
    const auto [stored, at] = storedPosition(array, static_cast<std::int64_t>(row));
    if (stored->IsNull(at)) {
      positions.values[row] = texts.null();
      continue;
    }
    text.clear();
    appendPresent(text, *stored, at);
    positions.values[row] = texts.add(text);
  }
  return {texts.column(positions), std::nullopt};
}

}  // namespace kelvarin
