#include "jit/arithmetic.h"

namespace kelvarin::jit {

double raised(double base, double exponent) {
  const double result = std::pow(base, exponent);
  const bool isNullLost = std::isnan(result) && (isNullNumber(base) || isNullNumber(exponent));
  return isNullLost ? kNullNumber : result;
}

double power(double base, double exponent) {
  if (exponent == 2.0) {
    return multiply(base, base);
  }
  if (exponent == 3.0) {
    return multiply(multiply(base, base), base);
  }
  if (exponent == 4.0) {
    return multiply(multiply(multiply(base, base), base), base);
  }
  return raised(base, exponent);
}

}  // namespace kelvarin::jit
