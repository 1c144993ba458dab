// Prints numbers in the shortest form that reads back to the same double.
//
// The one form in which numbers become text: in files, in results and in texts made by expressions.
#pragma once

#include <cstdint>

namespace kelvarin {

// The room that the functions need; they may write behind the end that they give.
inline constexpr int kLongestNumberText = 48;

// Writes at `place` and gives the end: without an exponent from 0.0001 to below 1e16, and nan, inf
// or -inf. The missing value is the caller's affair.
char* appendShortest(char* place, double number);

// The same for a whole number.
char* appendWhole(char* place, std::uint64_t number);

}  // namespace kelvarin
