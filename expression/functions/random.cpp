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
  result.giveText("kelvarin");
}

constexpr unsigned kFastAndString = kInFast | kInString;

constexpr FunctionLine kLines[] = {
    {"whoami", 1, kInString, ResultKind::text, {}, productName, "whoami(x) - returns kelvarin"},
    {"rand", 1, kFastAndString, ResultKind::number, uniformBelow, nullptr,
     "rand(x) - uniform random number inside [0 x["},
    {"rand1", 0, kFastAndString, ResultKind::number, uniform, nullptr,
     "rand1() - uniform random number inside [0 1["},
    {"randN", 1, kFastAndString, ResultKind::number, wholeBelow, nullptr,
     "randN(x) - uniform random integer number inside [0 x["},
};

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> randomNumbers() {
  return kLines;
}

}  // namespace kelvarin
