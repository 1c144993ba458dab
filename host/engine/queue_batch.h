// A piece of memory with rows of one pin in it, one after another: per column the bytes of
// column_bytes.h, a missing value as its type's missing-value bytes.
//
// Rows are appended while others are read; a row that is in stays where it is. The rows can be
// looked at ahead where they all have the same size: those of numbers and keys alone.
// Used by: row_queue.cpp.
// Threads: one.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/contract/one_row.h"
#include "host/contract/rows_in_hand.h"

namespace kelvarin {

// How the rows of one pin lie in memory.
class RowLayout {
 public:
  explicit RowLayout(const OneRow& row);

  // Of every row; 0 where rows differ.
  std::size_t rowSize() const { return m_rowSize; }
  std::size_t sizeOf(const OneRow& row) const;
  // Of a row whose size is that of every row.
  std::size_t offsetOf(int column) const { return m_offsets[static_cast<std::size_t>(column)]; }
  void copy(const OneRow& row, unsigned char* to) const;
  // Points `values` at those of the row that begins at `bytes`; returns the row's end.
  unsigned char* pointAt(unsigned char* bytes, unsigned char** values) const;

 private:
  std::vector<MetaTypeColumn> m_types;
  std::vector<std::size_t> m_offsets;
  std::size_t m_rowSize = 0;
};

class QueueBatch final : public RowsInHand {
 public:
  QueueBatch(const RowLayout& layout, std::unique_ptr<unsigned char[]> bytes, std::size_t capacity)
      : m_layout(layout), m_bytes(std::move(bytes)), m_capacity(capacity) {}

  bool hasSpaceFor(std::size_t rowSize) const { return m_capacity - m_size >= rowSize; }
  void append(const OneRow& row, std::size_t rowSize);

  std::size_t capacity() const { return m_capacity; }
  std::size_t size() const { return m_size; }
  std::size_t rowCount() const { return m_rowCount; }
  // Null while the rows are elsewhere.
  unsigned char* bytes() const { return m_bytes.get(); }
  void putBytes(std::unique_ptr<unsigned char[]> bytes) { m_bytes = std::move(bytes); }

  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* buffer) const override;
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* buffer) const override;

 private:
  template <typename Value>
  const Value* gather(int column, std::size_t first, std::size_t count, Value* buffer) const;

  const RowLayout& m_layout;
  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_capacity;
  std::size_t m_size = 0;
  std::size_t m_rowCount = 0;
};

}  // namespace kelvarin
