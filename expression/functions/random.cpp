// Random numbers from the generators of the evaluator, and the name of the product.

#include <cmath>

#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

double uniform(FunctionContext& context) {
  return drawUnit(context.random);
}

double uniformBelow(FunctionContext& context, double x) {
  return isNullNumber(x) ? kNullNumber : drawUnit(context.random) * x;
}

double wholeBelow(FunctionContext& context, double x) {
  return isNullNumber(x) ? kNullNumber : std::floor(drawUnit(context.random) * x);
}

// Whatever the argument is.
void productName(FunctionContext&, std::span<const FunctionArgument>, FunctionResult& result) {
  result.setText("kelvarin");
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"whoami", 1, kInString, kText, productName,
     "whoami(x) - returns kelvarin"},
    {"rand", 1, kFastAndString, kNumber, uniformBelow,
     "rand(x) - uniform random number inside [0 x[", {}, Source::randomNumbers},
    {"rand1", 0, kFastAndString, kNumber, uniform,
     "rand1() - uniform random number inside [0 1[", {}, Source::randomNumbers},
    {"randN", 1, kFastAndString, kNumber, wholeBelow,
     "randN(x) - uniform random integer number inside [0 x[", {}, Source::randomNumbers},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> randomNumbers() {
  return kLines;
}

}  // namespace kelvarin
