#include "jit/executable_memory.h"

#include <cstring>

#if defined(__unix__)
#include <sys/mman.h>
#endif

namespace kelvarin::jit {

#if defined(__unix__)

ExecutableMemory ExecutableMemory::holding(std::span<const std::uint8_t> code) {
  if (code.empty()) {
    return {};
  }
  void* pages =
      mmap(nullptr, code.size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) {
    return {};
  }
  ExecutableMemory memory(static_cast<std::uint8_t*>(pages), code.size());
  std::memcpy(pages, code.data(), code.size());
  if (mprotect(pages, code.size(), PROT_READ | PROT_EXEC) != 0) {
    return {};
  }
  return memory;
}

ExecutableMemory::~ExecutableMemory() {
  if (m_begin != nullptr) {
    munmap(m_begin, m_size);
  }
}

#else

ExecutableMemory ExecutableMemory::holding(std::span<const std::uint8_t>) {
  return {};
}

ExecutableMemory::~ExecutableMemory() = default;

#endif

}  // namespace kelvarin::jit
