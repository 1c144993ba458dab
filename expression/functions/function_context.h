// What functions with a memory work on: the random generators and the dates' settings of one
// evaluator.
//
// Owned by ExpressionEvaluator; bodies of the function table that need it take it as their first
// argument. Threads: one.
#pragma once

#include "expression/dates/date_context.h"
#include "expression/functions/random_generator.h"

namespace kelvarin {

struct FunctionContext {
  RandomGenerator random;        // of the numeric random functions
  RandomGenerator secondRandom;  // of the text functions
  DateContext dates;

  void seed(std::uint32_t seed) {
    random.seed(seed);
    secondRandom.seed(seed);
  }
};

}  // namespace kelvarin
