// The values of some thousand rows, column by column, in the bytes that rows point to.
//
// A reader fills it; a source publishes its rows, and offers all of them to those who look ahead.
// Memory is kept from one filling to the next.
// Threads: one at a time; ReadAhead passes a batch from the reading thread to the engine's.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/contract/column_bytes.h"
#include "host/contract/meta_info.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// One column of a batch: contiguous values, in the form of column_bytes.h.
class ValueColumn {
 public:
  explicit ValueColumn(MetaTypeColumn type) : m_type(type) {}

  MetaTypeColumn type() const { return m_type; }
  // Memory for `size` bytes, replacing all values; the caller writes every value of the batch.
  unsigned char* replace(std::size_t size) {
    if (size > m_capacity) {
      m_capacity = size + size / 4;
      m_bytes.reset(new unsigned char[m_capacity]);
    }
    m_next = m_bytes.get();
    m_texts.clear();
    return m_next;
  }
  double* replaceNumbers(std::size_t count) {
    return reinterpret_cast<double*>(replace(count * sizeof(double)));
  }
  std::uint32_t* replaceKeys(std::size_t count) {
    return reinterpret_cast<std::uint32_t*>(replace(count * sizeof(std::uint32_t)));
  }
  // The first value.
  const unsigned char* values() const { return m_bytes.get(); }
  unsigned char* next() {
    unsigned char* value = m_next;
    m_next += sizeOf(value);
    return value;
  }
  // `row` is that of the next value.
  void skip(std::size_t row, std::size_t count) {
    if (m_type == MetaTypeColumn::number || m_type == MetaTypeColumn::key) {
      m_next += count * sizeOf(m_next);
    } else if (row + count < m_texts.size()) {
      m_next = m_texts[row + count];
    } else {
      for (std::size_t i = 0; i < count; ++i) {
        m_next += sizeOf(m_next);
      }
    }
  }
  // Where the texts are, of which there are `count`.
  const unsigned char* const* texts(std::size_t count) const {
    if (m_texts.empty()) {
      m_texts.resize(count);
      unsigned char* next = m_bytes.get();
      for (unsigned char*& text : m_texts) {
        text = next;
        next += sizeOf(next);
      }
    }
    return m_texts.data();
  }

 private:
  std::size_t sizeOf(const unsigned char* value) const {
    if (m_type == MetaTypeColumn::number) {
      return sizeof(double);
    }
    if (m_type == MetaTypeColumn::key) {
      return sizeof(std::uint32_t);
    }
    const std::uint32_t length = lengthFromBytes(value);
    return 4 + (length == kNullTextLength ? 0 : length);
  }

  MetaTypeColumn m_type;
  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_capacity = 0;
  unsigned char* m_next = nullptr;
  mutable std::vector<unsigned char*> m_texts;  // empty until somebody asks
};

// Write a text, or the null text, at `target`, and return the address after it.
inline unsigned char* putText(unsigned char* target, const char* bytes, std::size_t size) {
  const auto length = static_cast<std::uint32_t>(size);
  std::memcpy(target, &length, 4);
  if (size > 0) {
    std::memcpy(target + 4, bytes, size);
  }
  return target + 4 + size;
}

inline unsigned char* putNullText(unsigned char* target) {
  std::memcpy(target, &kNullTextLength, 4);
  return target + 4;
}

class RowBatch final : public RowsInHand {
 public:
  void setColumns(const std::vector<MetaTypeColumn>& types) {
    m_columns.clear();
    m_columns.reserve(types.size());
    for (const MetaTypeColumn type : types) {
      m_columns.emplace_back(type);
    }
    m_rowsLeft = 0;
  }
  ValueColumn& column(std::size_t index) { return m_columns[index]; }
  std::size_t columnCount() const { return m_columns.size(); }
  // All columns have been filled with `count` values.
  void setRowCount(long long count) { m_rowCount = m_rowsLeft = count; }
  std::size_t rowsLeft() const { return static_cast<std::size_t>(m_rowsLeft); }

  const double* numbers(int column, std::size_t first, std::size_t, double*) const override {
    return reinterpret_cast<const double*>(valuesOf(column)) + first;
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t,
                            std::uint32_t*) const override {
    return reinterpret_cast<const std::uint32_t*>(valuesOf(column)) + first;
  }

  const unsigned char* const* texts(int column, std::size_t first, std::size_t,
                                    const unsigned char**) const override {
    return m_columns[static_cast<std::size_t>(column)].texts(static_cast<std::size_t>(m_rowCount)) +
           first;
  }

  // Passes over rows, of which there are so many.
  void skip(std::size_t count) {
    const auto row = static_cast<std::size_t>(m_rowCount - m_rowsLeft);
    for (ValueColumn& column : m_columns) {
      column.skip(row, count);
    }
    m_rowsLeft -= static_cast<long long>(count);
  }
  // Points `values` at the next row's values; false when there is none.
  bool takeRow(unsigned char** values) {
    if (m_rowsLeft == 0) [[unlikely]] {
      return false;
    }
    --m_rowsLeft;
    for (ValueColumn& column : m_columns) {
      *values++ = column.next();
    }
    return true;
  }

 private:
  const unsigned char* valuesOf(int column) const {
    return m_columns[static_cast<std::size_t>(column)].values();
  }

  std::vector<ValueColumn> m_columns;
  long long m_rowCount = 0;
  long long m_rowsLeft = 0;
};

}  // namespace kelvarin
