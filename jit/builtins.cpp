#include "jit/builtins.h"

#include <cmath>

#include "jit/arithmetic.h"

namespace kelvarin::jit {

namespace {

// These formulas, not the C library's functions of the same names, are what the language's
// functions mean.
double areaSine(double x) {
  return std::log(x + std::sqrt(x * x + 1));
}
double areaCosine(double x) {
  return std::log(x + std::sqrt(x * x - 1));
}
double areaTangent(double x) {
  return 0.5 * std::log((1 + x) / (1 - x));
}
double logarithm2(double x) {
  return std::log(x) / std::log(2.0);
}

double rint(double x) {
  return roundDown(x + 0.5);
}
double sign(double x) {
  return x < 0 ? -1.0 : numberOf(x > 0);
}

Symbols makeBuiltins() {
  Symbols symbols;
  const auto add1 = [&](std::string_view name, Function1 function,
                        Intrinsic intrinsic = Intrinsic::none) {
    symbols.functions.set(name, NamedFunction{function, intrinsic});
  };
  const auto add2 = [&](std::string_view name, Function2 function) {
    symbols.functions.set(name, NamedFunction{function});
  };
  add1("sin", std::sin);
  add1("cos", std::cos);
  add1("tan", std::tan);
  add1("asin", std::asin);
  add1("acos", std::acos);
  add1("atan", std::atan);
  add2("atan2", std::atan2);
  add1("sinh", std::sinh);
  add1("cosh", std::cosh);
  add1("tanh", std::tanh);
  add1("asinh", areaSine);
  add1("acosh", areaCosine);
  add1("atanh", areaTangent);
  add1("log2", logarithm2);
  add1("log10", std::log10);
  add1("log", std::log);
  add1("ln", std::log);
  add1("exp", std::exp);
  add1("cbrt", std::cbrt);
  add1("sqrt", squareRoot, Intrinsic::squareRoot);
  add1("sign", sign, Intrinsic::sign);
  add1("rint", rint, Intrinsic::rint);
  add1("abs", absolute, Intrinsic::absolute);
  add1("trunc", truncate, Intrinsic::truncate);
  add2("hypot", std::hypot);
  add2("fmod", std::fmod);
  add2("pow", raised);
  symbols.functions.set("sum", Accumulation::sum);
  symbols.functions.set("avg", Accumulation::average);
  symbols.functions.set("min", Accumulation::smallest);
  symbols.functions.set("max", Accumulation::largest);

  symbols.constants.set("_pi", {3.141592653589});  // kept: twelve decimals
  symbols.constants.set("_e", {2.718281828459045});
  symbols.constants.set("pi", {3.141592653589793});
  symbols.constants.set("e", {2.718281828459045});
  return symbols;
}

}  // namespace

const Symbols& builtins() {
  static const Symbols symbols = makeBuiltins();
  return symbols;
}

}  // namespace kelvarin::jit
