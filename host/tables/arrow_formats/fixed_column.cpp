// Columns of numbers and of keys.
#include <algorithm>
#include <limits>
#include <memory>

#include "host/tables/arrow_formats/parquet_columns.h"
#include "host/tables/arrow_formats/value_dictionary.h"

namespace kelvarin {

namespace {

// Looking up more of them takes longer than all else, and saves little.
constexpr std::size_t kMaxDictionaryBytes = 256 * 1024;

template <typename Value>
const Value* valuesOf(const BatchColumn& column) {
  if constexpr (std::is_same_v<Value, double>) {
    return column.numbers();
  } else {
    return column.keys();
  }
}

bool isMissing(double number) {
  return isNullNumber(number);
}

bool isMissing(std::uint32_t key) {
  return isNullKey(key);
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

template <typename Value>
class FixedColumn {
 public:
  FixedColumn(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages)
      : m_column(column), m_rowCount(rowCount), m_pages(pages) {}

  ValueRange encode() {
    m_isCoded = doesRepeat() && makeCodes();
    if (m_isCoded) {
      m_pages.appendDictionary(reinterpret_cast<const std::uint8_t*>(m_dictionary->values()),
                               m_dictionary->size() * sizeof(Value), m_dictionary->size());
    }
    GroupColumnCursor cursor(m_column);
    for (std::size_t row = 0; row < m_rowCount; row += kRowsInPage) {
      appendPage(cursor, row, std::min(kRowsInPage, m_rowCount - row));
    }
    return m_range.range();
  }

 private:
  bool doesRepeat() {
    ValueDictionary<Value> seen(kMaxRowsLookedAt);
    return doValuesRepeat(m_column, m_rowCount, [&](const BatchColumn& values, std::size_t row) {
      const Value value = valuesOf<Value>(values)[row];
      const std::size_t before = seen.size();
      std::uint32_t code;
      return isMissing(value) || (seen.find(value, code) && seen.size() == before);
    });
  }

  // False: there are too many different values, or none.
  bool makeCodes() {
    m_dictionary = std::make_unique<ValueDictionary<Value>>(kMaxDictionaryBytes / sizeof(Value));
    m_codes = std::make_unique<ColumnMemory<std::uint32_t>>(m_rowCount);
    std::uint32_t* next = m_codes->values;
    for (const GroupColumn::Piece& piece : m_column.pieces) {
      const Value* values = valuesOf<Value>(piece.values);
      for (std::size_t row = 0; row < piece.rowCount; ++row) {
        *next = kNoCode;
        if (!isMissing(values[row]) && !m_dictionary->find(values[row], *next)) {
          return false;
        }
        ++next;
      }
    }
    return m_dictionary->size() > 0;
  }

  void appendPage(GroupColumnCursor& cursor, std::size_t firstRow, std::size_t rowCount) {
    auto* values = reinterpret_cast<Value*>(m_pages.valuesOfPage(rowCount * sizeof(Value)));
    std::size_t filled = 0;
    cursor.next(rowCount, [&](const BatchColumn& piece, std::size_t first, std::size_t count) {
      std::copy_n(valuesOf<Value>(piece) + first, count, values + filled);
      filled += count;
    });
    const std::size_t present = removeMissing(values, rowCount);
    RangeOf<Value> range;
    range.add(values, present);
    m_range.add(range);
    if (!m_isCoded) {
      m_pages.appendPage(rowCount, rowCount - present, present * sizeof(Value), range.range());
    } else {
      appendCodes(m_codes->values + firstRow, rowCount, bitsOfCodes(m_dictionary->size()),
                  range.range(), m_pages);
    }
  }

  // Returns how many values are left.
  std::size_t removeMissing(Value* values, std::size_t rowCount) {
    const auto missing = static_cast<std::size_t>(
        std::count_if(values, values + rowCount, [](Value value) { return isMissing(value); }));
    if (missing == 0) {
      return rowCount;
    }
    std::vector<std::uint32_t>& presence = m_pages.presence();
    presence.resize(rowCount);
    Value* next = values;
    for (std::size_t row = 0; row < rowCount; ++row) {
      const Value value = values[row];
      presence[row] = isMissing(value) ? 0 : 1;
      *next = value;
      next += presence[row];
    }
    return rowCount - missing;
  }

  const GroupColumn& m_column;
  std::size_t m_rowCount;
  ColumnPages& m_pages;
  std::unique_ptr<ValueDictionary<Value>> m_dictionary;
  bool m_isCoded = false;
  std::unique_ptr<ColumnMemory<std::uint32_t>> m_codes;  // of all rows
  RangeOf<Value> m_range;
};

}  // namespace

ValueRange encodeNumbers(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages) {
  return FixedColumn<double>(column, rowCount, pages).encode();
}

ValueRange encodeKeys(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages) {
  return FixedColumn<std::uint32_t>(column, rowCount, pages).encode();
}

}  // namespace kelvarin
