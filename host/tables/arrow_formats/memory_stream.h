// A stream of the Arrow library into memory.
//
// The library's own clears the memory that it does not need.
// Used by: ColumnPages.
// Errors: std::bad_alloc.
#pragma once

#include <cstring>

#include "arrow/io/interfaces.h"
#include "arrow/result.h"
#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

class MemoryStream : public arrow::io::OutputStream {
 public:
  // More than `expectedSize` bytes need copying.
  explicit MemoryStream(std::size_t expectedSize)
      : m_memory(expectedSize), m_capacity(expectedSize) {}

  arrow::Status Write(const void* bytes, std::int64_t count) override {
    const auto size = static_cast<std::size_t>(count);
    if (size > m_capacity - m_size) {
      m_capacity = 2 * (m_size + size);
      ColumnMemory<std::uint8_t> larger(m_capacity);
      std::memcpy(larger.values, m_memory.values, m_size);
      m_memory = larger;
    }
    std::memcpy(m_memory.values + m_size, bytes, size);
    m_size += size;
    return arrow::Status::OK();
  }
  using arrow::io::OutputStream::Write;
  arrow::Result<std::int64_t> Tell() const override { return static_cast<std::int64_t>(m_size); }
  arrow::Status Close() override { return arrow::Status::OK(); }
  bool closed() const override { return false; }

  // What has been written.
  std::shared_ptr<arrow::Buffer> bytes() const {
    return arrow::SliceBuffer(m_memory.owner, 0, static_cast<std::int64_t>(m_size));
  }

 private:
  ColumnMemory<std::uint8_t> m_memory;
  std::size_t m_capacity;
  std::size_t m_size = 0;
};

}  // namespace kelvarin
