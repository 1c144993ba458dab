#include "jit/tests/system_functions.h"

#include "base/null_number.h"

namespace kelvarin::jit {

namespace {

double isNull(double x) {
  return isNullNumber(x) ? 1.0 : 0.0;
}
double isNan(double x) {
  return std::bit_cast<std::uint64_t>(x) == kNotANumberBits ? 1.0 : 0.0;
}
double isFinite(double x) {
  return isFiniteNumber(x) ? -1.0 : 0.0;
}
double isTrue(double x) {
  return x == 0.0 || isNullNumber(x) ? 0.0 : 1.0;
}
double logicalNot(double x) {
  return isNullNumber(x) ? kNullNumber : x == 0.0 ? 1.0 : 0.0;
}
double square(double x) {
  return x * x;
}
double nvl(double a, double b) {
  return isNullNumber(a) ? b : a;
}
double nvl2(double a, double b, double c) {
  return isNullNumber(a) ? c : b;
}
double nanvl(double a, double b) {
  return std::isnan(a) ? b : a;
}
double nanvl2(double a, double b, double c) {
  return std::isnan(a) ? c : b;
}
double finitevl(double a, double b) {
  return isFiniteNumber(a) ? a : b;
}
double finitevl2(double a, double b, double c) {
  return isFiniteNumber(a) ? b : c;
}
double floor2(double x, double y) {
  if (isNullNumber(x) || isNullNumber(y)) {
    return kNullNumber;
  }
  const double quotient = x / y;
  return x - (quotient - std::floor(quotient)) * y;
}
// Not inlined: a call with three arguments, in an order that shows a mix-up.
double blend(double a, double b, double c) {
  return a - b * 2.0 + c * 3.0;
}

const SystemFunction kFunctions[] = {
    {"isNuLL", isNull, Intrinsic::isNull},
    {"isNan", isNan, Intrinsic::isNan},
    {"isFinite", isFinite, Intrinsic::isFinite},
    {"isMissing", isNull, Intrinsic::isNull},
    {"isTrue", isTrue, Intrinsic::isTrue},
    {"not", logicalNot, Intrinsic::logicalNot},
    {"sqr", square, Intrinsic::square},
    {"nvl", nvl, Intrinsic::nvl},
    {"nvl2", nvl2, Intrinsic::nvl2},
    {"nanvl", nanvl, Intrinsic::nanvl},
    {"nanvl2", nanvl2, Intrinsic::nanvl2},
    {"finitevl", finitevl, Intrinsic::finitevl},
    {"finitevl2", finitevl2, Intrinsic::finitevl2},
    {"floor2", floor2, Intrinsic::floor2},
    {"blend", blend, Intrinsic::none},
};

}  // namespace

std::span<const SystemFunction> systemFunctions() {
  return kFunctions;
}

std::shared_ptr<const CompilerContext> systemContext() {
  static const auto shared = [] {
    auto context = std::make_shared<CompilerContext>();
    for (const SystemFunction& function : kFunctions) {
      context->addFunction(function.name, function.function, function.intrinsic);
    }
    context->addConstant("_null", kNullNumber);
    context->addConstant("_nan", kNotANumber);
    context->addConstant("_infinity", kInfinity);
    return context;
  }();
  return shared;
}

}  // namespace kelvarin::jit
