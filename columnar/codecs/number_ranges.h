// Finds the range of the numbers of a block, as doubles and as integers scaled by a power of ten.
//
// Numbers are passed as their bits, so that nothing is lost. Processors with 256-bit operations
// process four numbers at a time; the results are the same, since every operation is exact or
// rounded as the standard says.
// Threads: any.
#pragma once

#include <cstdint>
#include <span>

namespace kelvarin::kernels {

using Numbers = std::span<const std::uint64_t>;

// Of zeros of both signs -0.0 is the lowest and 0.0 the highest.
struct NumberRange {
  bool hasMissing = false;
  bool hasNotANumber = false;  // other than missing
  bool hasValues = false;      // numbers other than these
  double lowest = 0.0;
  double highest = 0.0;
};
NumberRange rangeOf(Numbers numbers);

// Stands for a missing number among scaled ones.
inline constexpr std::int64_t kMissingInteger = INT64_MIN;

struct ScaledRange {
  bool isExact = false;  // every number is missing or a whole number of 10^-exponent
  bool hasMissing = false;
  bool hasValues = false;
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
};
// Writes each number times 10^exponent, or kMissingInteger.
ScaledRange scale(Numbers numbers, int exponent, std::int64_t* integers);

// Whether a number is missing, or a whole number when it is scaled.
bool isExactScaled(std::uint64_t number, int exponent);

double powerOfTen(int exponent);

}  // namespace kelvarin::kernels
