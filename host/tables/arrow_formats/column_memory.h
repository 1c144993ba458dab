// Memory for values, from an allocator of the Arrow library.
//
// It keeps what is freed for the next batch, where the system's would return it and get memory
// that is cleared first, a quarter of the time of writing.
#pragma once

#include <memory>
#include <new>

#include "arrow/buffer.h"
#include "arrow/memory_pool.h"

namespace kelvarin {

// Of the library's allocators the one that keeps the least, where the library has it.
arrow::MemoryPool* columnPool();

template <typename Value>
struct ColumnMemory {
  explicit ColumnMemory(std::size_t count) {
    auto allocated =
        arrow::AllocateBuffer(static_cast<std::int64_t>(count * sizeof(Value)), columnPool());
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
