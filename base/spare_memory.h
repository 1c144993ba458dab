// Memory of buffers that have been freed, kept for the next ones.
//
// What is decoded batch by batch takes as much memory each time, which the allocator returns to
// the system in between and gets page by page again. So some megabytes of large buffers are kept
// here, for all threads.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <cstddef>

namespace kelvarin::spare_memory {

// Unset bytes, at least `size`, which is rounded up to what they have: by a quarter at most.
unsigned char* take(std::size_t& size);
// `size` as take() has left it.
void giveBack(unsigned char* bytes, std::size_t size);

}  // namespace kelvarin::spare_memory
