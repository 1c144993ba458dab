#include "jit/arithmetic.h"

namespace kelvarin::jit {

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
  return std::pow(base, exponent);
}

}  // namespace kelvarin::jit
