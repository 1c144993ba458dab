// A column in the buffers of an Arrow array, and the array of a table of such columns.
//
// Used by: exported_batch.cpp, exported_texts.cpp, untouched_numbers.cpp, whole_table.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "include/kelvarin/arrow_c_data.h"
#include "library/arrow_streams/null_bits.h"

namespace kelvarin {

// What is released with it where nobody takes it.
class OwnedArray {
 public:
  OwnedArray() = default;
  explicit OwnedArray(const ArrowArray& array) : m_array(array) {}
  ~OwnedArray();
  OwnedArray(OwnedArray&& other) noexcept : m_array(other.take()) {}
  OwnedArray& operator=(OwnedArray&& other) noexcept;

  const ArrowArray& get() const { return m_array; }
  ArrowArray take();

 private:
  ArrowArray m_array{};
};

// Lives as long as the array that was made of it.
struct ExportedColumn {
  NullBits nulls;
  std::size_t offset = 0;             // of the first row, in all buffers and bits
  std::vector<const void*> buffers;   // behind the bits
  std::shared_ptr<const void> owner;  // of the values
  std::shared_ptr<const void> made;   // what was made for the array
};

OwnedArray arrayOfTable(std::vector<std::unique_ptr<ExportedColumn>> columns, std::size_t rows);

}  // namespace kelvarin
