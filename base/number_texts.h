// Prints a column's numbers in their shortest form, many at once.
//
// The texts are those of appendShortest(). Numbers of the same kind are printed together, which
// saves branches that depend on the values.
// Used by: the writer of CSV files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelvarin {

// A printed number, somewhere in its memory. The bytes up to kCopied after the begin may be read.
struct NumberText {
  static constexpr std::size_t kCopied = 32;

  char bytes[62];
  std::uint8_t begin;
  std::uint8_t size;  // 0: the missing value

  const char* data() const { return bytes + begin; }
  std::string_view text() const { return {data(), size}; }
};

// At most kNumbersPrinted numbers.
inline constexpr std::size_t kNumbersPrinted = 64;
void printNumbers(const double* numbers, std::size_t count, NumberText* texts);

}  // namespace kelvarin
