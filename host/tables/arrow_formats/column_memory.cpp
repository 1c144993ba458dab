#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

namespace {

arrow::MemoryPool* chosenPool() {
#ifdef __SANITIZE_ADDRESS__
  return arrow::system_memory_pool();  // which the sanitizer watches
#else
  arrow::MemoryPool* pool = nullptr;
  return arrow::jemalloc_memory_pool(&pool).ok() ? pool : arrow::default_memory_pool();
#endif
}

}  // namespace

arrow::MemoryPool* columnPool() {
  static arrow::MemoryPool* const pool = chosenPool();
  return pool;
}

}  // namespace kelvarin
