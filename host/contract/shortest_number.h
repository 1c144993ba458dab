// Prints numbers in the shortest form that reads back to the same double.
//
// The one form in which numbers become text: in files, in results and in texts made by expressions.
#pragma once

#include "host/contract/export.h"

namespace kelvarin {

// The most characters that appendShortest() writes.
inline constexpr int kLongestNumberText = 32;

// Writes at `place` and gives the end: without an exponent from 0.0001 to below 1e16, and nan, inf
// or -inf. The missing value is the caller's affair.
KELVARIN_CORE char* appendShortest(char* place, double number);

}  // namespace kelvarin
