#include "host/tables/arrow_formats/typed_column.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>

#include "host/contract/column_bytes.h"
#include "host/tables/arrow/iso_time.h"

namespace kelvarin {

namespace {

// Exactly the number, or nothing.
template <typename Value>
std::optional<Value> valueOfNumber(double number) {
  if constexpr (std::is_same_v<Value, double>) {
    return number;
  } else if constexpr (std::is_same_v<Value, bool>) {
    return number == 0 || number == 1 ? std::optional(number == 1) : std::nullopt;
  } else {
    using Limits = std::numeric_limits<Value>;
    // One more than the largest one is a number for every type, which the largest may not be.
    const double beyond = std::ldexp(1.0, Limits::digits);
    if (!(number >= static_cast<double>(Limits::min()) && number < beyond)) {
      return std::nullopt;
    }
    const auto value = static_cast<Value>(number);
    return static_cast<double>(value) == number ? std::optional(value) : std::nullopt;
  }
}

template <typename Value>
std::optional<Value> valueOfText(std::string_view text, const StoredType& type) {
  if constexpr (std::is_same_v<Value, bool>) {
    const bool isTrue = text == "true" || text == "1";
    return isTrue || text == "false" || text == "0" ? std::optional(isTrue) : std::nullopt;
  } else {
    if constexpr (std::is_same_v<Value, std::int64_t>) {
      if (type.kind == StoredType::Kind::timestamp) {
        return ticksOfIsoTimestamp(text, type.decimals, type.isUtc);
      }
    }
    if constexpr (std::is_same_v<Value, std::int32_t>) {
      if (type.kind == StoredType::Kind::date) {
        const auto days = daysOfIsoDate(text);
        return days ? std::optional(static_cast<Value>(*days)) : std::nullopt;
      }
    }
    Value value;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
  }
}

// What makes values of those of a column in the types of rows.
template <typename Value>
class Conversion {
 public:
  Conversion(std::size_t rowCount, const StoredType& type, BadValues& bad)
      : m_made(rowCount), m_rowCount(rowCount), m_type(type), m_bad(bad) {}

  void add(const GroupColumn::Piece& piece) {
    switch (piece.values.type()) {
      case MetaTypeColumn::number:
        return addNumbers(piece.values.numbers(), piece.rowCount);
      case MetaTypeColumn::key:
        return addKeys(piece.values.keys(), piece.rowCount);
      default:
        return addTexts(piece.values, piece.rowCount);
    }
  }
  TypedColumn<Value> take() { return std::move(m_made); }

 private:
  void addNumbers(const double* numbers, std::size_t count) {
    for (std::size_t row = 0; row < count; ++row) {
      if (isNullNumber(numbers[row])) {
        addMissing();
      } else if (const auto value = valueOfNumber<Value>(numbers[row])) {
        addValue(*value);
      } else {
        addBad(shortestText(numbers[row]).toStdString());
      }
    }
  }

  void addKeys(const std::uint32_t* keys, std::size_t count) {
    for (std::size_t row = 0; row < count; ++row) {
      if (isNullKey(keys[row])) {
        addMissing();
      } else if (const auto value = valueOfNumber<Value>(keys[row])) {
        addValue(*value);
      } else {
        addBad(std::to_string(keys[row]));
      }
    }
  }

  void addTexts(const BatchColumn& texts, std::size_t count) {
    for (std::size_t row = 0; row < count; ++row) {
      const unsigned char* text = texts.text(row);
      if (isNullText(text)) {
        addMissing();
      } else if (const auto value = valueOfText<Value>(textFromBytes(text), m_type)) {
        addValue(*value);
      } else {
        addBad(textFromBytes(text));
      }
    }
  }

  void addValue(Value value) { m_made.values.values[m_row++] = value; }

  void addMissing() {
    if (m_made.isThere.empty()) {
      m_made.isThere.assign(m_rowCount, 1);
    }
    m_made.isThere[m_row] = 0;
    addValue(Value{});
  }

  void addBad(std::string_view text) {
    constexpr std::size_t kMaxShownBytes = 200;
    if (m_bad.count++ == 0) {
      m_bad.firstRow = m_row;
      m_bad.firstText = text.substr(0, kMaxShownBytes);
    }
    addMissing();
  }

  TypedColumn<Value> m_made;
  std::size_t m_rowCount;
  std::size_t m_row = 0;
  StoredType m_type;
  BadValues& m_bad;
};

}  // namespace

template <typename Value>
TypedColumn<Value> typedColumn(const GroupColumn& column, std::size_t rowCount,
                               const StoredType& type, BadValues& bad) {
  Conversion<Value> conversion(rowCount, type, bad);
  for (const GroupColumn::Piece& piece : column.pieces) {
    conversion.add(piece);
  }
  return conversion.take();
}

template TypedColumn<std::int64_t> typedColumn(const GroupColumn&, std::size_t, const StoredType&,
                                               BadValues&);
template TypedColumn<std::int32_t> typedColumn(const GroupColumn&, std::size_t, const StoredType&,
                                               BadValues&);
template TypedColumn<std::uint32_t> typedColumn(const GroupColumn&, std::size_t, const StoredType&,
                                                BadValues&);
template TypedColumn<double> typedColumn(const GroupColumn&, std::size_t, const StoredType&,
                                         BadValues&);
template TypedColumn<bool> typedColumn(const GroupColumn&, std::size_t, const StoredType&,
                                       BadValues&);

}  // namespace kelvarin
