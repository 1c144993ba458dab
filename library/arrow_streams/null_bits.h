// Which rows of an array have no value: a bit for each, 0 where it is missing.
//
// Used by: exported_column.h, whole_columns.h, text_views.h.
// Errors: std::bad_alloc.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "library/arrow_streams/value_search.h"

namespace kelvarin {

class NullBits {
 public:
  NullBits() = default;
  // Behind the last row they are set.
  explicit NullBits(std::vector<unsigned char> bits) : m_bits(std::move(bits)) {
    for (const unsigned char byte : m_bits) {
      m_count += 8 - std::popcount(byte);
    }
  }

  // The bits of all rows are made at the first null.
  void add(std::size_t row, std::size_t rowCount) {
    if (m_bits.empty()) {
      m_bits.assign((rowCount + 7) / 8, 0xFF);
    }
    m_bits[row / 8] = static_cast<unsigned char>(m_bits[row / 8] & ~(1u << (row % 8)));
    ++m_count;
  }
  // Those of `others`, whose first row is row `begin` here, and which are so many. Bits are there
  // for as many rows as were added so.
  void add(const NullBits& others, std::size_t begin, std::size_t rows) {
    if (others.m_count == 0) {
      return;
    }
    m_bits.resize(std::max(m_bits.size(), (begin + rows + 7) / 8), 0xFF);
    for (std::size_t byte = 0; byte < others.m_bits.size(); ++byte) {
      addByte(static_cast<unsigned char>(~others.m_bits[byte]), begin + byte * 8);
    }
    m_count += others.m_count;
  }
  void cover(std::size_t rows) {
    if (!m_bits.empty()) {
      m_bits.resize((rows + 7) / 8, 0xFF);
    }
  }

  std::int64_t count() const { return m_count; }
  // Null where no value is missing.
  const void* bits() const { return m_count == 0 ? nullptr : m_bits.data(); }

 private:
  void addByte(unsigned missing, std::size_t row) {
    if (missing != 0) {
      const std::size_t byte = row / 8;
      const unsigned shifted = missing << (row % 8);
      m_bits[byte] = static_cast<unsigned char>(m_bits[byte] & ~shifted);
      if (shifted > 0xFF) {
        m_bits[byte + 1] = static_cast<unsigned char>(m_bits[byte + 1] & ~(shifted >> 8));
      }
    }
  }

  std::vector<unsigned char> m_bits;
  std::int64_t m_count = 0;
};

inline bool mayHaveNull(const double* numbers, std::size_t count) {
  return hasNaN(numbers, count);
}

inline bool mayHaveNull(const std::uint32_t* keys, std::size_t count) {
  return hasNullKey(keys, count);
}

inline bool isNull(double number) {
  return isNullNumber(number);
}

inline bool isNull(std::uint32_t key) {
  return isNullKey(key);
}

template <typename Value>
void addNulls(const Value* rows, std::size_t count, NullBits& nulls) {
  constexpr std::size_t kRowsAtOnce = 256;
  for (std::size_t begin = 0; begin < count; begin += kRowsAtOnce) {
    const std::size_t end = std::min(begin + kRowsAtOnce, count);
    if (!mayHaveNull(rows + begin, end - begin)) {
      continue;
    }
    for (std::size_t row = begin; row < end; ++row) {
      if (isNull(rows[row])) {
        nulls.add(row, count);
      }
    }
  }
}

}  // namespace kelvarin
