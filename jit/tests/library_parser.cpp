#include "jit/tests/library_parser.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "base/null_number.h"
#include "jit/tests/system_functions.h"

namespace kelvarin::jit {

namespace {

// Stands for `^`, which the library would compute by other rules.
constexpr char kPower = '@';

// The C library drops the sign of a null, which is one no longer then.
double raised(double base, double exponent) {
  const double result = std::pow(base, exponent);
  const bool hasNull = isNullNumber(base) || isNullNumber(exponent);
  return std::isnan(result) && hasNull ? kNullNumber : result;
}

double power(double base, double exponent) {
  if (exponent == 2.0) {
    return base * base;
  }
  if (exponent == 3.0) {
    return base * base * base;
  }
  if (exponent == 4.0) {
    return base * base * base * base;
  }
  return raised(base, exponent);
}

// The library's change the sign of a missing value, which is one no longer then.
double negated(double x) {
  return std::isnan(x) ? x : -x;
}
double absolute(double x) {
  return x < 0.0 ? -x : x;
}

double nano(double x) {
  return x * 1e-9;
}
double micro(double x) {
  return x * 1e-6;
}
double milli(double x) {
  return x * 1e-3;
}
double kilo(double x) {
  return x * 1e3;
}
double mega(double x) {
  return x * 1e6;
}
double giga(double x) {
  return x * 1e9;
}

int readHexadecimal(const char* text, int* position, double* value) {
  if (text[0] != '0' || text[1] != 'x') {
    return 0;
  }
  std::istringstream stream(text + 2);
  unsigned number = 0;
  stream >> std::hex >> number;
  if (stream.fail() || std::isxdigit(static_cast<unsigned char>(text[2])) == 0) {
    return 0;
  }
  *position += 2 + static_cast<int>(stream.tellg());
  *value = number;
  return 1;
}

}  // namespace

LibraryParser::LibraryParser() {
  m_parser.EnableOptimizer(false);
  m_parser.DefineOprtChars(
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+-*^/?<>=#!$%&|~'_{}@");
  m_parser.DefineOprt(std::string(1, kPower), power, mu::prPOW, mu::oaRIGHT);
  const auto remainder = static_cast<Function2>(std::fmod);
  m_parser.DefineOprt("%", remainder, mu::prMUL_DIV, mu::oaLEFT);
  m_parser.DefineInfixOprt("-", negated);
  m_parser.DefineFun("abs", absolute);
  m_parser.DefinePostfixOprt("{n}", nano);
  m_parser.DefinePostfixOprt("{u}", micro);
  m_parser.DefinePostfixOprt("{mu}", micro);
  m_parser.DefinePostfixOprt("{m}", milli);
  m_parser.DefinePostfixOprt("{k}", kilo);
  m_parser.DefinePostfixOprt("{M}", mega);
  m_parser.DefinePostfixOprt("{G}", giga);
  m_parser.AddValIdent(readHexadecimal);
  m_parser.DefineConst("pi", 3.141592653589793);
  m_parser.DefineConst("e", 2.718281828459045);
  m_parser.DefineConst("_null", kNullNumber);
  m_parser.DefineConst("_nan", kNotANumber);
  m_parser.DefineConst("_infinity", kInfinity);
  m_parser.DefineFun("trunc", static_cast<Function1>(std::trunc));
  m_parser.DefineFun("cbrt", static_cast<Function1>(std::cbrt));
  m_parser.DefineFun("hypot", static_cast<Function2>(std::hypot));
  m_parser.DefineFun("fmod", remainder);
  m_parser.DefineFun("pow", raised);
  for (const SystemFunction& function : systemFunctions()) {
    std::visit([&](auto body) { m_parser.DefineFun(function.name, body); }, function.function);
  }
  for (std::size_t i = 0; i < kVariables.size(); ++i) {
    m_parser.DefineVar(kVariables[i], &m_values[i]);
  }
}

bool LibraryParser::setExpression(const std::string& expression) {
  std::string text = expression;
  std::replace(text.begin(), text.end(), '^', kPower);
  try {
    m_parser.SetExpr(text);
    m_parser.Eval();
    return m_parser.GetNumResults() == 1;
  } catch (const mu::ParserError&) {
    return false;
  }
}

double LibraryParser::evaluate(const double* values) {
  std::copy_n(values, m_values.size(), m_values.begin());
  return m_parser.Eval();
}

}  // namespace kelvarin::jit
