// Loops over integers: those that put them together from the parts that packed numbers store, and
// their bounds.
//
// Used by PackedNumbers, IntegerColumn and its encoder.
// Threads: any.
#pragma once

#include <cstdint>
#include <span>

namespace kelvarin::kernels {

// numbers[i] = base + codes[i]
void startIntegers(std::span<const std::uint32_t> codes, std::uint64_t base,
                   std::uint64_t* numbers);
// numbers[i] += codes[i] x 2^shift
void addToIntegers(std::span<const std::uint32_t> codes, int shift, std::uint64_t* numbers);
void addToIntegers(std::span<const std::uint16_t> codes, int shift, std::uint64_t* numbers);

// Of at least one number.
struct IntegerBounds {
  std::uint64_t smallest;
  std::uint64_t largest;
};
IntegerBounds boundsOf(std::span<const std::uint64_t> numbers);
// Whether no number is larger.
bool areAtMost(std::span<const std::uint64_t> numbers, std::uint64_t limit);

}  // namespace kelvarin::kernels
