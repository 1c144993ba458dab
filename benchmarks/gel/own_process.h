// Runs a piece of the benchmark in a process of its own, which begins as a copy of this one.
//
// So everything that is timed finds the same memory: nothing is left over or scattered by what was
// timed before it. The copy inherits what this process has in memory, read and written by nobody
// else.
// Threads: called while the process has no other busy thread.  Errors: std::runtime_error with the
// message of what was thrown there.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>

namespace kelvarin {

// `work` fills `size` bytes at `result` in the other process; they arrive at `result` in this one.
void runInOwnProcess(const std::function<void()>& work, void* result, std::size_t size);

template <typename Work>
auto inOwnProcess(Work work) {
  using Found = decltype(work());
  static_assert(std::is_trivially_copyable_v<Found>);
  Found found{};
  runInOwnProcess([&] { found = work(); }, &found, sizeof found);
  return found;
}

}  // namespace kelvarin
