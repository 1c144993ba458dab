// How many processors this process may use: those that the system, a container or `taskset` leaves
// it.
//
// Threads beyond them only take the processors from one another. Used by: the number of threads of
// a run, its pool, and the writer of columnar files.
// Threads: any.
#pragma once

#include <algorithm>
#include <thread>

#include <sched.h>

namespace kelvarin {

// At least 1.
inline int usableProcessors() {
  cpu_set_t usable;
  if (::sched_getaffinity(0, sizeof usable, &usable) == 0) {
    return std::max(1, CPU_COUNT(&usable));
  }
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

}  // namespace kelvarin
