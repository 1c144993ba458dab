#include <cmath>

#include "benchmarks/expressions/c_contenders.h"

namespace kelvarin {

namespace {

#define C_EXPRESSION(name, body)                 \
  double name(const double* values) {            \
    [[maybe_unused]] const double a = values[0]; \
    [[maybe_unused]] const double b = values[1]; \
    [[maybe_unused]] const double c = values[2]; \
    return body;                                 \
  }
#include "benchmarks/expressions/c_expressions.h"
#undef C_EXPRESSION

}  // namespace

#define C_EXPRESSION(name, body) {#name, name},
const CRow kCRows[kExpressionCount] = {
#include "benchmarks/expressions/c_expressions.h"
};
#undef C_EXPRESSION

}  // namespace kelvarin
