// Turns the number that an expression gave into a key.
#pragma once

#include <cmath>
#include <cstdint>

#include "base/null_number.h"
#include "expression/evaluator/variables.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

enum class CastMode { zeroOrCut = 0, null = 1, stop = 2 };

// False when the run must stop. A NaN and the infinities are out of range.
inline bool castToKey(double number, const KeyCast& cast, std::uint32_t& key) {
  constexpr double kEndOfRange = 4294967294.0;
  key = kNullKey;
  if (isNullNumber(number)) {
    return true;
  }
  const bool isInRange = number >= 0.0 && number < kEndOfRange;
  if (!isInRange) {
    key = static_cast<CastMode>(cast.outOfRange) == CastMode::zeroOrCut ? 0 : kNullKey;
    return static_cast<CastMode>(cast.outOfRange) != CastMode::stop;
  }
  const auto whole = static_cast<std::uint32_t>(number);
  const bool isCut = static_cast<CastMode>(cast.fraction) == CastMode::zeroOrCut;
  if (!isCut && whole != number) {
    return static_cast<CastMode>(cast.fraction) != CastMode::stop;
  }
  key = whole;
  return true;
}

}  // namespace kelvarin
