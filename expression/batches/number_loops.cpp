#include "expression/batches/number_loops.h"

#include <cmath>

#include "expression/backends/bit_operations.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

template <double (*compute)(double)>
void loop(const double* x, std::size_t rows, double* results) {
  for (std::size_t i = 0; i < rows; ++i) {
    results[i] = compute(x[i]);
  }
}

template <double (*compute)(double, double)>
void loop(const double* x, const double* y, std::size_t rows, double* results) {
  for (std::size_t i = 0; i < rows; ++i) {
    results[i] = compute(x[i], y[i]);
  }
}

double remainder(double x, double y) {
  return std::fmod(x, y);
}
double both(double x, double y) {
  return jit::numberOf(jit::isTruth(x) && jit::isTruth(y));
}
double either(double x, double y) {
  return jit::numberOf(jit::isTruth(x) || jit::isTruth(y));
}
double less(double x, double y) {
  return jit::numberOf(x < y);
}
double lessOrEqual(double x, double y) {
  return jit::numberOf(x <= y);
}
double greater(double x, double y) {
  return jit::numberOf(x > y);
}
double greaterOrEqual(double x, double y) {
  return jit::numberOf(x >= y);
}
double equal(double x, double y) {
  return jit::numberOf(x == y);
}
double notEqual(double x, double y) {
  return jit::numberOf(x != y);
}

}  // namespace

NumberLoop1 numberLoop1(Operation operation) {
  switch (operation) {
    case Operation::negate:
      return loop<jit::negate>;
    case Operation::toInteger:
      return loop<bits::toInteger>;
    default:
      return nullptr;
  }
}

NumberLoop2 numberLoop2(Operation operation) {
  switch (operation) {
    case Operation::add:
      return loop<jit::add>;
    case Operation::subtract:
      return loop<jit::subtract>;
    case Operation::multiply:
      return loop<jit::multiply>;
    case Operation::divide:
      return loop<jit::divide>;
    case Operation::remainder:
      return loop<remainder>;
    case Operation::power:
      return loop<jit::power>;
    case Operation::bitAnd:
      return loop<bits::bitAnd>;
    case Operation::bitOr:
      return loop<bits::bitOr>;
    case Operation::shiftLeft:
      return loop<bits::shiftLeft>;
    case Operation::shiftRight:
      return loop<bits::shiftRight>;
    case Operation::both:
      return loop<both>;
    case Operation::either:
      return loop<either>;
    case Operation::less:
      return loop<less>;
    case Operation::lessOrEqual:
      return loop<lessOrEqual>;
    case Operation::greater:
      return loop<greater>;
    case Operation::greaterOrEqual:
      return loop<greaterOrEqual>;
    case Operation::equal:
      return loop<equal>;
    case Operation::notEqual:
      return loop<notEqual>;
    default:
      return nullptr;
  }
}

}  // namespace kelvarin
