// Prints numbers in the shortest form that reads back to the same double.
//
// The one form in which numbers become text: in files, in results and in texts made by expressions.
#pragma once

#include <cstdint>

namespace kelvarin {

// The capacity that the functions need in bytes; they may write beyond the end that they return.
inline constexpr int kLongestNumberText = 48;

// Writes to `out` and returns the end of the text: without an exponent from 0.0001 to below 1e16,
// and nan, inf or -inf. The missing value has no form here, so the caller checks for it first.
char* appendShortest(char* out, double number);

// The same for a whole number.
char* appendWhole(char* out, std::uint64_t number);

}  // namespace kelvarin
