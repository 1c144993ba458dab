// How integers stand for numbers: over a power of ten or of two, or as the upper bits of doubles.
//
// A number that a product or a sum has left beside the quotient that it is close to has a
// correction: by how many units of least precision it differs. Used by the encoding `integers`.
// Layout: docs/gel-format.md, "Numbers as integers".
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvarin {

struct NumberScale {
  enum class Kind : std::uint8_t {
    decimal = 0,  // the integer over 10^exponent
    binary = 1,   // the integer over 2^exponent
    bits = 2,     // the integer x 2^exponent are the bits of the number
  };
  Kind kind = Kind::decimal;
  int exponent = 0;

  bool isSound() const;
};

// Integers that are exact as doubles are handled as unsigned numbers: increased by this number.
inline constexpr std::uint64_t kIntegerOffset = std::uint64_t{1} << 53;
constexpr std::uint64_t offsetOf(const NumberScale& scale) {
  return scale.kind == NumberScale::Kind::bits ? 0 : kIntegerOffset;
}

// The integers of a block are `first`, which includes the offset, and some steps more.
struct IntegerSteps {
  std::uint64_t first = 0;
  std::uint64_t step = 1;

  bool isSound(const NumberScale& scale) const;
  // The largest number of steps that leads to an integer.
  std::uint64_t largest(const NumberScale& scale) const;
};

namespace kernels {

// Stands for a correction where no integer stands for the number.
inline constexpr std::uint64_t kNoCorrection = UINT64_MAX;

// Writes the integer of each number, increased by the offset, and its correction in zigzag
// encoding. Returns whether all corrections are 0.
bool takeIntegers(std::span<const std::uint64_t> numbers, const NumberScale& scale,
                  std::uint64_t* integers, std::uint64_t* corrections);
// Writes the number after each count of steps, without a correction.
void makeNumbers(std::span<const std::uint64_t> counts, const NumberScale& scale,
                 const IntegerSteps& steps, unsigned char* numbers);

}  // namespace kernels

}  // namespace kelvarin
