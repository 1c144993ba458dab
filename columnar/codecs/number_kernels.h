// The loops that turn the numbers of a block into what a layout stores, and back.
//
// Numbers are taken by their bits, so that nothing is lost. Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/number_ranges.h"

namespace kelvarin::kernels {

// Stores each integer less the base, missing ones as all bits set.
void storeScaled(std::span<const std::int64_t> integers, std::int64_t base, CodeWidth width,
                 unsigned char* codes);

// Differences by their sizes, so that both signs are short: 0, -1, 1, -2, 2, ...
constexpr std::uint64_t foldedSign(std::int64_t difference) {
  return static_cast<std::uint64_t>(difference) << 1 ^ static_cast<std::uint64_t>(difference >> 63);
}
constexpr std::int64_t unfoldedSign(std::uint64_t code) {
  return static_cast<std::int64_t>(code >> 1 ^ (0 - (code & 1)));
}

// What each integer differs from the one before, missing ones passed over; the first differs from
// `base`. False when one does not fit. Missing ones become all bits set. `largest` is the largest
// difference.
bool takeDifferences(std::span<const std::int64_t> integers, std::int64_t base,
                     std::uint32_t* differences, std::uint32_t& largest);

// How codes become numbers.
struct Scale {
  std::uint64_t missing;  // a code, or more than any code
  std::int64_t base;
  int exponent;
};
void unscale(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers);
// The same where the codes are differences and the base is what the first one differs from.
void unscaleDifferences(const LoadedCodes& codes, const Scale& scale, unsigned char* numbers);

// The `planes` highest bytes of each number, plane after plane, then the other bytes of each.
void split(Numbers numbers, int planes, unsigned char* out);
void join(const unsigned char* bytes, std::size_t rows, int planes, unsigned char* numbers);

std::size_t countOthers(Numbers numbers, std::uint64_t common);

}  // namespace kelvarin::kernels
