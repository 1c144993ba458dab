// The loops that turn the numbers of a block into what an encoding stores, and back.
//
// Numbers are passed as their bits, so that nothing is lost.
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/number_ranges.h"

namespace kelvarin::kernels {

// Stores each integer less the base as a code; a missing one has all bits set.
void storeFrameOfReference(std::span<const std::int64_t> integers, std::int64_t base,
                           CodeWidth width, unsigned char* codes);

// Zigzag encoding numbers deltas as 0, -1, 1, -2, 2, ..., so that small ones of both signs are
// short.
constexpr std::uint64_t zigzagEncoded(std::int64_t delta) {
  return static_cast<std::uint64_t>(delta) << 1 ^ static_cast<std::uint64_t>(delta >> 63);
}
constexpr std::int64_t zigzagDecoded(std::uint64_t code) {
  return static_cast<std::int64_t>(code >> 1 ^ (0 - (code & 1)));
}

// How codes become numbers.
struct Scale {
  std::uint64_t missing;  // a code, or more than any code
  std::int64_t base;
  int exponent;
};
void unscale(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers);
// The same where the codes are deltas, the first one to the base.
void unscaleDeltas(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers);

// The `planes` highest bytes of all numbers, plane after plane, then the other bytes of each.
void split(Numbers numbers, int planes, unsigned char* out);
void join(const unsigned char* bytes, std::size_t rows, int planes, unsigned char* numbers);

std::size_t countOthers(Numbers numbers, std::uint64_t common);

}  // namespace kelvarin::kernels
