// Memory of buffers that have been freed, kept for the next ones.
//
// What is decoded batch by batch takes as much memory each time, which the allocator returns to
// the system in between and gets page by page again. So some megabytes of large buffers are kept
// here, for all threads.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <cstddef>
#include <utility>

namespace kelvarin {

namespace spare_memory {

// Unset bytes, at least `size`, which is rounded up to what they have: by a quarter at most.
unsigned char* take(std::size_t& size);
// `size` as take() has left it.
void giveBack(unsigned char* bytes, std::size_t size);

}  // namespace spare_memory

// A buffer of so many unset bytes.
class SpareBytes {
 public:
  SpareBytes() = default;
  explicit SpareBytes(std::size_t size) : m_size(size), m_bytes(spare_memory::take(m_size)) {}
  ~SpareBytes() {
    if (m_bytes != nullptr) {
      spare_memory::giveBack(m_bytes, m_size);
    }
  }
  SpareBytes(SpareBytes&& other) noexcept
      : m_size(other.m_size), m_bytes(std::exchange(other.m_bytes, nullptr)) {}
  SpareBytes& operator=(SpareBytes&& other) noexcept {
    std::swap(m_size, other.m_size);
    std::swap(m_bytes, other.m_bytes);
    return *this;
  }

  unsigned char* get() const { return m_bytes; }

 private:
  std::size_t m_size = 0;  // of the memory
  unsigned char* m_bytes = nullptr;
};

}  // namespace kelvarin
