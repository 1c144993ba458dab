#include "library/arrow_streams/large_pages.h"

#include <cstdint>
#include <new>

#include <sys/mman.h>

namespace kelvarin {

namespace {

constexpr std::size_t kSmallPage = 4096;

}  // namespace

unsigned char* mapLargePages(std::size_t size) {
  void* mapped = size > SIZE_MAX - kLargePage
                     ? MAP_FAILED
                     : ::mmap(nullptr, size + kLargePage, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) {
    throw std::bad_alloc();
  }
  auto* first = static_cast<unsigned char*>(mapped);
  const std::size_t before = -reinterpret_cast<std::uintptr_t>(first) % kLargePage;
  if (before > 0) {
    ::munmap(first, before);
  }
  ::munmap(first + before + size, kLargePage - before);
  // What does not fill a large page takes small ones.
  ::madvise(first + before, size / kLargePage * kLargePage, MADV_HUGEPAGE);
  return first + before;
}

void unmapLargePages(unsigned char* bytes, std::size_t size) {
  ::munmap(bytes, size);
}

std::shared_ptr<unsigned char[]> largeBytes(std::size_t size) {
  if (size < kLargePage) {
    return std::shared_ptr<unsigned char[]>(new unsigned char[size]);
  }
  // A last large page that is hardly used would take more memory than it saves time.
  std::size_t whole = roundedUp(size, kLargePage);
  if (whole - size > size / 8) {
    whole = roundedUp(size, kSmallPage);
  }
  return {mapLargePages(whole), [whole](unsigned char* bytes) { unmapLargePages(bytes, whole); }};
}

}  // namespace kelvarin
