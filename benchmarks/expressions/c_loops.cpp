// Compiled once for each set of loops; LOOPS is its name.
#include <cmath>

#include "benchmarks/expressions/c_contenders.h"

namespace kelvarin {

namespace {

#define C_EXPRESSION(name, body)                                                 \
  void name(const double* columnA, const double* columnB, const double* columnC, \
            std::size_t count, double* __restrict results) {                     \
    for (std::size_t i = 0; i < count; ++i) {                                    \
      [[maybe_unused]] const double a = columnA[i];                              \
      [[maybe_unused]] const double b = columnB[i];                              \
      [[maybe_unused]] const double c = columnC[i];                              \
      results[i] = body;                                                         \
    }                                                                            \
  }
#include "benchmarks/expressions/c_expressions.h"
#undef C_EXPRESSION

}  // namespace

#define C_EXPRESSION(name, body) {#name, name},
const CLoop LOOPS[kExpressionCount] = {
#include "benchmarks/expressions/c_expressions.h"
};
#undef C_EXPRESSION

}  // namespace kelvarin
