// Memory in large pages, which the system hands out in a quarter of the time of small ones.
//
// Used by: array_memory.cpp, whole_columns.cpp, text_pieces.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <cstddef>
#include <memory>

namespace kelvarin {

inline constexpr std::size_t kLargePage = 2 << 20;

constexpr std::size_t roundedUp(std::size_t size, std::size_t unit) {
  return (size + unit - 1) / unit * unit;
}

// `size` is a multiple of a page of any size. The bytes are zero, begin at a multiple of a large
// page whatever the system has, and take memory only where they are written.
unsigned char* mapLargePages(std::size_t size);
void unmapLargePages(unsigned char* bytes, std::size_t size);

// Unset bytes, aligned for every type: in large pages where they fill one.
std::shared_ptr<unsigned char[]> largeBytes(std::size_t size);

}  // namespace kelvarin
