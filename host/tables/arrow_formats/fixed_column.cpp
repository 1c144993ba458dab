// Columns of numbers and of keys, and columns in other types of fixed size.
#include <algorithm>
#include <limits>
#include <memory>

#include "host/tables/arrow_formats/parquet_columns.h"
#include "host/tables/arrow_formats/value_dictionary.h"

namespace kelvarin {

namespace {

// Looking up more of them takes longer than all else, and saves little.
constexpr std::size_t kMaxDictionaryBytes = 256 * 1024;

bool isNull(double number) {
  return isNullNumber(number);
}

bool isNull(std::uint32_t key) {
  return isNullKey(key);
}

template <typename Value>
const Value* valuesOf(const BatchColumn& column) {
  if constexpr (std::is_same_v<Value, double>) {
    return column.numbers();
  } else {
    return column.keys();
  }
}

template <typename Value>
const Value* valuesOf(const TypedColumn<Value>& column) {
  return column.values.values;
}

template <typename Value>
bool isMissing(const BatchColumn& column, std::size_t row) {
  return isNull(valuesOf<Value>(column)[row]);
}

template <typename Value>
bool isMissing(const TypedColumn<Value>& column, std::size_t row) {
  return column.isMissing(row);
}

GroupColumnCursor cursorOver(const GroupColumn& column) {
  return GroupColumnCursor(column);
}

template <typename Value>
TypedColumnCursor<Value> cursorOver(const TypedColumn<Value>& column) {
  return TypedColumnCursor<Value>(column);
}

template <typename Value>
std::string bytesOf(Value value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

// The range of values of which none is missing; a NaN is not in any range.
template <typename Value>
class RangeOf {
 public:
  void add(const Value* values, std::size_t count) {
    Value least[kLanes];
    Value largest[kLanes];
    std::fill_n(least, kLanes, m_least);
    std::fill_n(largest, kLanes, m_largest);
    std::size_t next = 0;
    for (; next + kLanes <= count; next += kLanes) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) {
        const Value value = values[next + lane];
        least[lane] = value < least[lane] ? value : least[lane];
        largest[lane] = value > largest[lane] ? value : largest[lane];
      }
    }
    for (; next < count; ++next) {
      least[0] = std::min(least[0], values[next]);
      largest[0] = std::max(largest[0], values[next]);
    }
    m_least = *std::min_element(least, least + kLanes);
    m_largest = *std::max_element(largest, largest + kLanes);
  }
  void add(const RangeOf& other) {
    m_least = std::min(m_least, other.m_least);
    m_largest = std::max(m_largest, other.m_largest);
  }
  // A zero of either sign stands for both.
  ValueRange range() const {
    if (m_least > m_largest) {
      return {};
    }
    Value least = m_least;
    Value largest = m_largest;
    if constexpr (std::is_same_v<Value, double>) {
      least = least == 0.0 ? -0.0 : least;
      largest = largest == 0.0 ? 0.0 : largest;
    }
    return {true, bytesOf(least), bytesOf(largest)};
  }

 private:
  using Limits = std::numeric_limits<Value>;
  static constexpr std::size_t kLanes = 8;

  Value m_least = Limits::has_infinity ? Limits::infinity() : Limits::max();
  Value m_largest = Limits::has_infinity ? -Limits::infinity() : Limits::min();
};

// `Column` is a GroupColumn, or a TypedColumn of values that rows do not have.
template <typename Value, typename Column>
class FixedColumn {
 public:
  FixedColumn(const Column& column, std::size_t rowCount, ColumnPages& pages)
      : m_column(column), m_rowCount(rowCount), m_pages(pages) {}

  ValueRange encode() {
    m_isCoded = doesRepeat() && makeCodes();
    if (m_isCoded) {
      m_pages.appendDictionary(reinterpret_cast<const std::uint8_t*>(m_dictionary->values()),
                               m_dictionary->size() * sizeof(Value), m_dictionary->size());
    }
    Cursor cursor = cursorOver(m_column);
    for (std::size_t row = 0; row < m_rowCount; row += kRowsInPage) {
      appendPage(cursor, row, std::min(kRowsInPage, m_rowCount - row));
    }
    return m_range.range();
  }

 private:
  using Cursor = decltype(cursorOver(std::declval<const Column&>()));

  bool doesRepeat() {
    ValueDictionary<Value> seen(kMaxRowsLookedAt);
    const auto look = [&](const auto& values, std::size_t row) {
      const std::size_t before = seen.size();
      std::uint32_t code;
      return isMissing<Value>(values, row) ||
             (seen.find(valuesOf<Value>(values)[row], code) && seen.size() == before);
    };
    return doValuesRepeat(cursorOver(m_column), m_rowCount, look);
  }

  // False: there are too many different values, or none.
  bool makeCodes() {
    m_dictionary = std::make_unique<ValueDictionary<Value>>(kMaxDictionaryBytes / sizeof(Value));
    m_codes = std::make_unique<ColumnMemory<std::uint32_t>>(m_rowCount);
    std::uint32_t* next = m_codes->values;
    bool doFit = true;
    cursorOver(m_column).next(
        m_rowCount, [&](const auto& piece, std::size_t first, std::size_t count) {
          const Value* values = valuesOf<Value>(piece);
          for (std::size_t row = first; doFit && row < first + count; ++row) {
            *next = kNoCode;
            doFit = isMissing<Value>(piece, row) || m_dictionary->find(values[row], *next);
            ++next;
          }
        });
    return doFit && m_dictionary->size() > 0;
  }

  void appendPage(Cursor& cursor, std::size_t firstRow, std::size_t rowCount) {
    auto* values = reinterpret_cast<Value*>(m_pages.valuesOfPage(rowCount * sizeof(Value)));
    const Cursor pageBegin = cursor;
    std::size_t filled = 0;
    std::size_t missing = 0;
    cursor.next(rowCount, [&](const auto& piece, std::size_t first, std::size_t count) {
      std::copy_n(valuesOf<Value>(piece) + first, count, values + filled);
      filled += count;
      for (std::size_t row = first; row < first + count; ++row) {
        missing += isMissing<Value>(piece, row) ? 1 : 0;
      }
    });
    const std::size_t present = rowCount - missing;
    if (missing > 0) {
      removeMissing(pageBegin, values, rowCount);
    }
    RangeOf<Value> range;
    range.add(values, present);
    m_range.add(range);
    if (!m_isCoded) {
      m_pages.appendPage(rowCount, missing, present * sizeof(Value), range.range());
    } else {
      appendCodes(m_codes->values + firstRow, rowCount, bitsOfCodes(m_dictionary->size()),
                  range.range(), m_pages);
    }
  }

  // Moves the values that are there to the front.
  void removeMissing(Cursor cursor, Value* values, std::size_t rowCount) {
    std::vector<std::uint32_t>& presence = m_pages.presence();
    presence.resize(rowCount);
    Value* next = values;
    std::size_t i = 0;
    cursor.next(rowCount, [&](const auto& piece, std::size_t first, std::size_t count) {
      for (std::size_t row = first; row < first + count; ++row, ++i) {
        presence[i] = isMissing<Value>(piece, row) ? 0 : 1;
        *next = values[i];
        next += presence[i];
      }
    });
  }

  const Column& m_column;
  std::size_t m_rowCount;
  ColumnPages& m_pages;
  std::unique_ptr<ValueDictionary<Value>> m_dictionary;
  bool m_isCoded = false;
  std::unique_ptr<ColumnMemory<std::uint32_t>> m_codes;  // of all rows
  RangeOf<Value> m_range;
};

// A bit a value, without a dictionary.
class BooleanColumn {
 public:
  BooleanColumn(const TypedColumn<bool>& column, std::size_t rowCount, ColumnPages& pages)
      : m_column(column), m_rowCount(rowCount), m_pages(pages) {}

  ValueRange encode() {
    RangeOf<std::uint8_t> all;
    for (std::size_t row = 0; row < m_rowCount; row += kRowsInPage) {
      all.add(appendPage(row, std::min(kRowsInPage, m_rowCount - row)));
    }
    return all.range();
  }

 private:
  RangeOf<std::uint8_t> appendPage(std::size_t firstRow, std::size_t rowCount) {
    std::uint8_t* bits = m_pages.valuesOfPage((rowCount + 7) / 8);
    std::fill_n(bits, (rowCount + 7) / 8, std::uint8_t{0});
    std::vector<std::uint32_t>& presence = m_pages.presence();
    presence.resize(rowCount);
    RangeOf<std::uint8_t> range;
    std::size_t present = 0;
    for (std::size_t i = 0; i < rowCount; ++i) {
      presence[i] = m_column.isMissing(firstRow + i) ? 0 : 1;
      if (presence[i] == 1) {
        const std::uint8_t value = m_column.values.values[firstRow + i] ? 1 : 0;
        range.add(&value, 1);
        bits[present / 8] = static_cast<std::uint8_t>(bits[present / 8] | value << present % 8);
        ++present;
      }
    }
    m_pages.appendPage(rowCount, rowCount - present, (present + 7) / 8, range.range());
    return range;
  }

  const TypedColumn<bool>& m_column;
  std::size_t m_rowCount;
  ColumnPages& m_pages;
};

}  // namespace

ValueRange encodeNumbers(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages) {
  return FixedColumn<double, GroupColumn>(column, rowCount, pages).encode();
}

ValueRange encodeKeys(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages) {
  return FixedColumn<std::uint32_t, GroupColumn>(column, rowCount, pages).encode();
}

template <typename Value>
ValueRange encodeTyped(const TypedColumn<Value>& column, std::size_t rowCount, ColumnPages& pages) {
  if constexpr (std::is_same_v<Value, bool>) {
    return BooleanColumn(column, rowCount, pages).encode();
  } else {
    return FixedColumn<Value, TypedColumn<Value>>(column, rowCount, pages).encode();
  }
}

template ValueRange encodeTyped(const TypedColumn<std::int64_t>&, std::size_t, ColumnPages&);
template ValueRange encodeTyped(const TypedColumn<std::int32_t>&, std::size_t, ColumnPages&);
template ValueRange encodeTyped(const TypedColumn<std::uint32_t>&, std::size_t, ColumnPages&);
template ValueRange encodeTyped(const TypedColumn<double>&, std::size_t, ColumnPages&);
template ValueRange encodeTyped(const TypedColumn<bool>&, std::size_t, ColumnPages&);

}  // namespace kelvarin
