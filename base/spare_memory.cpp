#include "base/spare_memory.h"

#include <array>
#include <bit>
#include <mutex>

namespace kelvarin::spare_memory {

namespace {

// Smaller ones cost the allocator little; larger ones are rare.
constexpr std::size_t kSmallest = std::size_t{32} << 10;
constexpr std::size_t kLargest = std::size_t{4} << 20;
constexpr std::size_t kMaxBytes = std::size_t{16} << 20;  // that are kept
constexpr std::size_t kStepsOfDoubling = 4;

// Sizes grow by a quarter of a power of two.
struct SizeClass {
  explicit SizeClass(std::size_t size) {
    const auto power = static_cast<std::size_t>(std::bit_width(size - 1)) - 1;
    const std::size_t step = (std::size_t{1} << power) / kStepsOfDoubling;
    const std::size_t steps = (size + step - 1) / step;
    rounded = steps * step;
    index = (power - kFirstPower) * kStepsOfDoubling + steps - kStepsOfDoubling;
  }

  static constexpr std::size_t kFirstPower = std::bit_width(kSmallest - 1) - 1;
  static constexpr std::size_t kCount =
      (std::bit_width(kLargest) - 1 - kFirstPower) * kStepsOfDoubling + 1;
  std::size_t rounded;
  std::size_t index;
};

// Sanitizers see what is read or written behind a buffer, or after its end, only if each is new.
constexpr bool isKept(std::size_t size) {
#ifdef KELVARIN_CHECKS_ADDRESSES
  return false;
#endif
  return size >= kSmallest && size <= kLargest;
}

// Those of one size are linked by their first bytes.
struct Spare {
  Spare* next;
};

struct Spares {
  std::mutex mutex;  // guards what follows
  std::array<Spare*, SizeClass::kCount> first{};
  std::size_t bytes = 0;
};

// Never destroyed, since buffers may be freed when the process ends.
Spares& spares() {
  static auto* const all = new Spares;
  return *all;
}

}  // namespace

unsigned char* take(std::size_t& size) {
  if (!isKept(size)) {
    return new unsigned char[size];
  }
  const SizeClass wanted(size);
  size = wanted.rounded;
  Spares& all = spares();
  {
    const std::lock_guard lock(all.mutex);
    if (Spare* const spare = all.first[wanted.index]) {
      all.first[wanted.index] = spare->next;
      all.bytes -= size;
      return reinterpret_cast<unsigned char*>(spare);
    }
  }
  return new unsigned char[size];
}

void giveBack(unsigned char* bytes, std::size_t size) {
  if (isKept(size)) {
    const SizeClass found(size);
    Spares& all = spares();
    const std::lock_guard lock(all.mutex);
    if (all.bytes + size <= kMaxBytes) {
      all.first[found.index] = new (bytes) Spare{all.first[found.index]};
      all.bytes += size;
      return;
    }
  }
  delete[] bytes;
}

}  // namespace kelvarin::spare_memory
