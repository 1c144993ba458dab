#include "columnar/codecs/integer_kernels.h"

#include <algorithm>

namespace kelvarin::kernels {

namespace {

template <bool kStarts, typename Code>
[[gnu::always_inline]] inline void join(std::span<const Code> codes, int shift, std::uint64_t base,
                                        std::uint64_t* numbers) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    numbers[i] = (kStarts ? base : numbers[i]) + (std::uint64_t{codes[i]} << shift);
  }
}

[[gnu::always_inline]] inline bool atMost(std::span<const std::uint64_t> numbers,
                                          std::uint64_t limit) {
  std::uint64_t above = 0;
  for (const std::uint64_t number : numbers) {
    above |= number > limit ? 1 : 0;
  }
  return above == 0;
}

[[gnu::always_inline]] inline IntegerBounds bounds(std::span<const std::uint64_t> numbers) {
  IntegerBounds found{numbers[0], numbers[0]};
  for (const std::uint64_t number : numbers) {
    found.smallest = std::min(found.smallest, number);
    found.largest = std::max(found.largest, number);
  }
  return found;
}

// Compiled once for all processors and once for those with wider registers.
struct Loops {
  void (*start)(std::span<const std::uint32_t>, std::uint64_t, std::uint64_t*);
  void (*add)(std::span<const std::uint32_t>, int, std::uint64_t*);
  void (*addShort)(std::span<const std::uint16_t>, int, std::uint64_t*);
  bool (*atMost)(std::span<const std::uint64_t>, std::uint64_t);
  IntegerBounds (*bounds)(std::span<const std::uint64_t>);
};

constexpr Loops kPortable = {
    [](std::span<const std::uint32_t> codes, std::uint64_t base, std::uint64_t* numbers) {
      join<true>(codes, 0, base, numbers);
    },
    [](std::span<const std::uint32_t> codes, int shift, std::uint64_t* numbers) {
      join<false>(codes, shift, 0, numbers);
    },
    [](std::span<const std::uint16_t> codes, int shift, std::uint64_t* numbers) {
      join<false>(codes, shift, 0, numbers);
    },
    [](std::span<const std::uint64_t> numbers, std::uint64_t limit) {
      return atMost(numbers, limit);
    },
    [](std::span<const std::uint64_t> numbers) { return bounds(numbers); }};

#if defined(__x86_64__)
[[gnu::target("avx2")]] void startWide(std::span<const std::uint32_t> codes, std::uint64_t base,
                                       std::uint64_t* numbers) {
  join<true>(codes, 0, base, numbers);
}

[[gnu::target("avx2")]] void addWide(std::span<const std::uint32_t> codes, int shift,
                                     std::uint64_t* numbers) {
  join<false>(codes, shift, 0, numbers);
}

[[gnu::target("avx2")]] void addShortWide(std::span<const std::uint16_t> codes, int shift,
                                          std::uint64_t* numbers) {
  join<false>(codes, shift, 0, numbers);
}

[[gnu::target("avx2")]] bool atMostWide(std::span<const std::uint64_t> numbers,
                                        std::uint64_t limit) {
  return atMost(numbers, limit);
}

[[gnu::target("avx2")]] IntegerBounds boundsWide(std::span<const std::uint64_t> numbers) {
  return bounds(numbers);
}

constexpr Loops kWide = {startWide, addWide, addShortWide, atMostWide, boundsWide};
#endif

const Loops& loops() {
#if defined(__x86_64__)
  static const bool isWide = __builtin_cpu_supports("avx2");
  return isWide ? kWide : kPortable;
#else
  return kPortable;
#endif
}

}  // namespace

void startIntegers(std::span<const std::uint32_t> codes, std::uint64_t base,
                   std::uint64_t* numbers) {
  loops().start(codes, base, numbers);
}

void addToIntegers(std::span<const std::uint32_t> codes, int shift, std::uint64_t* numbers) {
  loops().add(codes, shift, numbers);
}

void addToIntegers(std::span<const std::uint16_t> codes, int shift, std::uint64_t* numbers) {
  loops().addShort(codes, shift, numbers);
}

bool areAtMost(std::span<const std::uint64_t> numbers, std::uint64_t limit) {
  return loops().atMost(numbers, limit);
}

IntegerBounds boundsOf(std::span<const std::uint64_t> numbers) {
  return loops().bounds(numbers);
}

}  // namespace kelvarin::kernels
