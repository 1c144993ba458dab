#include "actions/frame/tests/allocation_counter.h"

#include <atomic>
#include <cstddef>

#include <gtest/gtest.h>

namespace {

std::atomic<long long> s_allocations{0};

void count() {
  s_allocations.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*,
                                                                  std::size_t),
                                                         void (*)(const volatile void*));

namespace {

[[maybe_unused]] const int s_hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { count(); }, [](const volatile void*) {});

}  // namespace

#else

// In front of those of the C library, which operator new and Qt's containers call.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
  count();
  return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t size) {
  count();
  return __libc_calloc(number, size);
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
  count();
  return __libc_realloc(memory, size);
}
}

#endif

namespace kelvarin::testing {

long long allocationsSoFar() {
  return s_allocations.load();
}

namespace {

// Negative where the stage leaves rows.
long long allocationsOf(const BatchStage& stage, const RowBatch& batch) {
  const long long before = allocationsSoFar();
  const StageResult result = stage.process(batch, -1);
  return result.rowsDone < batch.rowCount() ? -1 : allocationsSoFar() - before;
}

}  // namespace

void expectNoAllocationsForRows(const BatchStage& stage, const RowBatch& batch) {
  (void)allocationsOf(stage, batch);  // what is learnt once
  const long long allocations = allocationsOf(stage, batch);
  EXPECT_GT(allocations, 0);
  EXPECT_EQ(allocationsOf(stage, *batch.slice(0, batch.rowCount() / 6)), allocations);
}

}  // namespace kelvarin::testing
