// The distinct numbers, or keys, of a column, and the code of each row's value: a dictionary of a
// Parquet file.
//
// Used by: fixed_column.cpp.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

namespace kelvarin {

// Which values exist decides which codes they get; nothing depends on addresses or time.
template <typename Value>
class ValueDictionary {
 public:
  // Takes up to `capacity` values.
  explicit ValueDictionary(std::size_t capacity)
      : m_capacity(capacity), m_shift(64 - std::bit_width(2 * capacity - 1)) {
    m_slots.assign(std::bit_ceil(2 * capacity), 0);
    m_values.reserve(capacity);
  }

  // False: the value is new, and there are as many as the dictionary takes.
  bool find(Value value, std::uint32_t& code) {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t slot = slotOf(value);; slot = (slot + 1) & mask) {
      code = m_slots[slot] - 1;
      if (m_slots[slot] == 0) {
        return add(value, slot, code);
      }
      if (isSame(m_values[code], value)) {
        return true;
      }
    }
  }
  const std::vector<Value>& values() const { return m_values; }

 private:
  using Bits = std::conditional_t<sizeof(Value) == 8, std::uint64_t, std::uint32_t>;

  static bool isSame(Value a, Value b) { return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b); }
  std::size_t slotOf(Value value) const {
    std::uint64_t bits = std::bit_cast<Bits>(value);
    bits = (bits ^ bits >> 32) * 0x9E3779B97F4A7C15ull;
    return bits >> m_shift;
  }
  bool add(Value value, std::size_t slot, std::uint32_t& code) {
    if (m_values.size() == m_capacity) {
      return false;
    }
    code = static_cast<std::uint32_t>(m_values.size());
    m_values.push_back(value);
    m_slots[slot] = code + 1;
    return true;
  }

  std::size_t m_capacity;
  int m_shift;
  std::vector<std::uint32_t> m_slots;  // code + 1; 0 where there is none
  std::vector<Value> m_values;
};

}  // namespace kelvarin
