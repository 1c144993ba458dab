// Memory for the values of a column, from the Arrow library's allocator: that keeps what is freed
// for the next batch, where fresh memory must be cleared by the system first.
#pragma once

#include <memory>
#include <new>

#include "arrow/buffer.h"

namespace kelvarin {

template <typename Value>
struct ColumnMemory {
  explicit ColumnMemory(std::size_t count) {
    auto allocated = arrow::AllocateBuffer(static_cast<std::int64_t>(count * sizeof(Value)));
    if (!allocated.ok()) {
      throw std::bad_alloc();
    }
    owner = *std::move(allocated);
    values = reinterpret_cast<Value*>(owner->mutable_data());
  }

  std::shared_ptr<arrow::Buffer> owner;
  Value* values;
};

}  // namespace kelvarin
