// Pages that hold finished machine code: written first, then made executable and never writable
// again.
//
// Used by native_compiler.cpp.
// Errors: an empty object when the system refuses the pages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace kelvarin::jit {

class ExecutableMemory {
 public:
  ExecutableMemory() = default;
  ~ExecutableMemory();
  ExecutableMemory(ExecutableMemory&& other) noexcept
      : m_begin(std::exchange(other.m_begin, nullptr)), m_size(std::exchange(other.m_size, 0)) {}
  ExecutableMemory& operator=(ExecutableMemory&& other) noexcept {
    std::swap(m_begin, other.m_begin);
    std::swap(m_size, other.m_size);
    return *this;
  }

  static ExecutableMemory holding(std::span<const std::uint8_t> code);

  bool isEmpty() const { return m_begin == nullptr; }
  const std::uint8_t* begin() const { return m_begin; }

 private:
  ExecutableMemory(std::uint8_t* begin, std::size_t size) : m_begin(begin), m_size(size) {}

  std::uint8_t* m_begin = nullptr;
  std::size_t m_size = 0;
};

}  // namespace kelvarin::jit
