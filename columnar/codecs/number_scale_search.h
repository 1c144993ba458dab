// Finds the scale by which the numbers of a block take the fewest bits as integers.
//
// It looks at a sample only: what the encoder makes of all numbers may be larger.
// Used by NumberEncoder.
// Threads: any.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "columnar/codecs/number_sample.h"
#include "columnar/codecs/number_scale.h"

namespace kelvarin {

struct ScaleGuess {
  NumberScale scale;
  double bits = 0.0;  // of a number
};

// There are at least two numbers. `decimals` is the exponent by which all of them are exact
// decimals, if it is known.
ScaleGuess findScale(std::span<const std::uint64_t> numbers, const NumberSample& sample,
                     std::optional<int> decimals);

}  // namespace kelvarin
