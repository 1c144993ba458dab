#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

arrow::MemoryPool* columnPool() {
  static arrow::MemoryPool* const pool = [] {
    arrow::MemoryPool* found = nullptr;
    return arrow::jemalloc_memory_pool(&found).ok() ? found : arrow::default_memory_pool();
  }();
  return pool;
}

}  // namespace kelvarin
