// The distinct numbers, or keys, of a column, and the code of each row's value: a dictionary of a
// Parquet file.
//
// Used by: fixed_column.cpp.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <type_traits>

#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

// Which values exist decides which codes they get; nothing depends on addresses or time.
template <typename Value>
class ValueDictionary {
 public:
  // Takes up to `capacity` values.
  explicit ValueDictionary(std::size_t capacity)
      : m_capacity(capacity),
        m_slotCount(std::bit_ceil(2 * capacity)),
        m_slots(m_slotCount),
        m_values(capacity) {
    std::fill_n(m_slots.values, m_slotCount, 0);
  }

  // False: the value is new, and there are as many as the dictionary takes.
  bool find(Value value, std::uint32_t& code) {
    const std::size_t mask = m_slotCount - 1;
    for (std::size_t slot = slotOf(value);; slot = (slot + 1) & mask) {
      code = m_slots.values[slot] - 1;
      if (m_slots.values[slot] == 0) {
        return add(value, slot, code);
      }
      if (isSame(m_values.values[code], value)) {
        return true;
      }
    }
  }
  const Value* values() const { return m_values.values; }
  std::size_t size() const { return m_size; }

 private:
  using Bits = std::conditional_t<sizeof(Value) == 8, std::uint64_t, std::uint32_t>;

  static bool isSame(Value a, Value b) { return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b); }
  std::size_t slotOf(Value value) const {
    std::uint64_t bits = std::bit_cast<Bits>(value);
    bits = (bits ^ bits >> 32) * 0x9E3779B97F4A7C15ull;
    return bits >> (65 - std::bit_width(m_slotCount));
  }
  bool add(Value value, std::size_t slot, std::uint32_t& code) {
    if (m_size == m_capacity) {
      return false;
    }
    code = static_cast<std::uint32_t>(m_size);
    m_values.values[m_size++] = value;
    m_slots.values[slot] = code + 1;
    return true;
  }

  std::size_t m_capacity;
  std::size_t m_slotCount;
  ColumnMemory<std::uint32_t> m_slots;  // code + 1; 0 where there is none
  ColumnMemory<Value> m_values;
  std::size_t m_size = 0;
};

}  // namespace kelvarin
