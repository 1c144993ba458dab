// The values of some rows, row by row in the bytes of column_bytes.h: rows on their way from one
// thread to another.
//
// Memory is kept from one filling to the next, and grows with the longest row only.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/columns_in_hand.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class PackedRows {
 public:
  explicit PackedRows(std::vector<MetaTypeColumn> types);

  const std::vector<MetaTypeColumn>& types() const { return m_types; }
  void append(const OneRow& row);
  // Rows from `begin` to before `end`, until it is full; returns how many.
  std::size_t append(const ColumnsInHand& rows, std::size_t begin, std::size_t end);
  // Enough to be passed on at once.
  bool isFull() const { return m_used >= kWantedBytes; }
  bool isEmpty() const { return m_rowCount == 0; }
  void clear();

  // Points `values` at the next row's values; false when there is none.
  bool takeRow(unsigned char** values);

 private:
  static constexpr std::size_t kWantedBytes = 128 * 1024;
  static constexpr std::size_t kFixedSize =
      sizeof(double);  // any value fits in, but not the bytes of a text

  unsigned char* reserve(std::size_t size) {
    if (m_capacity - m_used < size) [[unlikely]] {
      grow(size);
    }
    return m_bytes.get() + m_used;
  }
  void grow(std::size_t size);
  template <typename Value>
  void appendFixed(Value value) {
    std::memcpy(m_bytes.get() + m_used, &value, sizeof value);
    m_used += sizeof value;
  }
  std::size_t sizeOfRow(const ColumnsInHand& rows, std::size_t row) const;
  void appendText(const unsigned char* value, std::size_t columnsLeft);

  std::vector<MetaTypeColumn> m_types;
  std::vector<std::size_t> m_textColumns;
  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_capacity = 0;
  std::size_t m_used = 0;
  std::size_t m_taken = 0;
  long long m_rowCount = 0;
  long long m_rowsTaken = 0;
};

}  // namespace kelvarin
