// The loops over the numbers of a block, each simple enough for the vectorizer.
//
// Numbers are taken by their bits, so that nothing is lost. Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kelvarin::kernels {

using Numbers = std::span<const std::uint64_t>;

// What a missing number is among scaled ones.
inline constexpr std::int64_t kMissingInteger = INT64_MIN;

struct ScaledRange {
  bool isExact = false;  // every number is missing or a whole number of 10^-exponent
  bool hasMissing = false;
  bool hasValues = false;
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
};

double powerOfTen(int exponent);

// Whether a number is missing or exact, and how scaled.
bool isExactScaled(std::uint64_t number, int exponent);

// Writes each number times 10^exponent, or kMissingInteger.
ScaledRange scale(Numbers numbers, int exponent, std::int64_t* integers);

// A code is stored in a low part of 1, 2 or 4 bytes, for every row, and then a high part of 0, 1, 2,
// 4 or 8 bits, for every row.
struct CodeWidth {
  int lowBytes = 1;
  int highBits = 0;

  int bits() const { return 8 * lowBytes + highBits; }
};

// The widths that there are: 8, 9, 10, 12, 16, 17, 18, 20, 24 and 32 bits. Nothing for other numbers.
std::optional<CodeWidth> codeWidthOf(int bits);
// The narrowest that holds a code; nothing when it has more than 32 bits.
std::optional<CodeWidth> codeWidthFor(std::uint64_t largestCode);
std::size_t codesSize(std::size_t rows, CodeWidth width);

// Stores each integer less the base, missing ones as all bits set.
void storeCodes(std::span<const std::int64_t> integers, std::int64_t base, CodeWidth width,
                unsigned char* codes);
void unscale(const unsigned char* codes, std::size_t rows, CodeWidth width, bool hasMissing,
             std::int64_t base, int exponent, unsigned char* numbers);

// The `planes` highest bytes of each number, plane after plane, then the other bytes of each.
void split(Numbers numbers, int planes, unsigned char* out);
void join(const unsigned char* bytes, std::size_t rows, int planes, unsigned char* numbers);

// Codes of 0, 1, 2, 4 or 8 bits, the first in the lowest bits.
void packCodes(std::span<const std::uint8_t> codes, int bits, unsigned char* out);
// The fewest that tell so many entries apart.
int bitsOfCodes(std::size_t entries);
std::size_t packedCodesSize(std::size_t rows, int bits);
// `table` has 256 entries.
void lookUp(const unsigned char* codes, std::size_t rows, int bits, const std::uint64_t* table,
            unsigned char* numbers);

std::size_t countOthers(Numbers numbers, std::uint64_t common);

}  // namespace kelvarin::kernels
