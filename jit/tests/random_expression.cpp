#include "jit/tests/random_expression.h"

#include <bit>
#include <cstdint>
#include <string_view>

#include "base/null_number.h"
#include "jit/tests/library_parser.h"

namespace kelvarin::jit {

namespace {

constexpr const char* kBinaryOperators[] = {"+", "-",  "*", "/",  "%",  "^",  "+",  "-", "*",
                                            "<", "<=", ">", ">=", "==", "!=", "&&", "||"};

constexpr const char* kUnits[] = {"{n}", "{u}", "{mu}", "{m}", "{k}", "{M}", "{G}"};

constexpr const char* kConstants[] = {"_pi",  "_e", "pi", "e",         "_null",
                                      "_nan", "0",  "1",  "_infinity", "2"};

struct FunctionName {
  const char* name;
  int argumentCount;  // 0: any number
};

constexpr FunctionName kFunctions[] = {
    {"sin", 1},    {"cos", 1},    {"tan", 1},      {"asin", 1},      {"acos", 1},
    {"atan", 1},   {"atan2", 2},  {"sinh", 1},     {"cosh", 1},      {"tanh", 1},
    {"asinh", 1},  {"acosh", 1},  {"atanh", 1},    {"log2", 1},      {"log10", 1},
    {"log", 1},    {"ln", 1},     {"exp", 1},      {"sqrt", 1},      {"sign", 1},
    {"rint", 1},   {"abs", 1},    {"sum", 0},      {"avg", 0},       {"min", 0},
    {"max", 0},    {"trunc", 1},  {"cbrt", 1},     {"hypot", 2},     {"fmod", 2},
    {"pow", 2},    {"isNuLL", 1}, {"isNan", 1},    {"isFinite", 1},  {"isMissing", 1},
    {"isTrue", 1}, {"not", 1},    {"sqr", 1},      {"nvl", 2},       {"nvl2", 3},
    {"nanvl", 2},  {"nanvl2", 3}, {"finitevl", 2}, {"finitevl2", 3}, {"floor2", 2},
    {"abs", 1},    {"nvl", 2},    {"min", 0},      {"max", 0},       {"blend", 3}};

constexpr std::uint64_t kSpecialBits[] = {
    0x0000000000000000, 0x8000000000000000,                      // zeros
    0x3FF0000000000000, 0xBFF0000000000000,                      // ones
    0x0000000000000001, 0x8000000000000001, 0x000FFFFFFFFFFFFF,  // denormals
    0x7FEFFFFFFFFFFFFF, 0xFFEFFFFFFFFFFFFF, 0x0010000000000000,  // limits
    0x7FF0000000000000, 0xFFF0000000000000,                      // infinities
    0x7FF8000000000000, 0xFFF8000000000000, 0x7FF8000000000123, 0xFFFFFFFFFFFFFFFE,
    0x7FF0000000000001, 0xFFF7FFFFFFFFFFFF,  // signalling NaNs
    kNullNumberBits,    kNullNumberBits,    kNullNumberBits,    0x4000000000000000,
    0x4008000000000000, 0x4010000000000000, 0x3FE0000000000000, 0x4330000000000001,
    0xC330000000000001, 0x40DFFFFFFFFFFFFF};

}  // namespace

unsigned RandomExpression::below(unsigned limit) {
  return static_cast<unsigned>(m_random()) % limit;
}

std::string RandomExpression::expression() {
  return expression(2 + static_cast<int>(below(5)));
}

std::string RandomExpression::blank() {
  return isChance(90) ? "" : std::string(1, oneOf(std::string_view(" \t\n")));
}

std::string RandomExpression::expression(int depth) {
  if (depth <= 0) {
    return operand(0);
  }
  switch (below(10)) {
    case 0:
      return std::string(isChance(80) ? "-" : "+") + blank() + operand(depth - 1);
    case 1:
      return expression(depth - 1) + "?" + expression(depth - 1) + blank() + ":" +
             expression(depth - 1);
    case 2:
    case 3:
      return operand(depth);
    default:
      return expression(depth - 1) + blank() + oneOf(kBinaryOperators) + blank() +
             expression(depth - 1);
  }
}

std::string RandomExpression::operand(int depth) {
  const std::string unit = isChance(3) ? oneOf(kUnits) : "";
  if (depth <= 0) {
    return leaf() + unit;
  }
  if (isChance(50)) {
    return "(" + blank() + expression(depth - 1) + blank() + ")" + unit;
  }
  return call(depth) + unit;
}

std::string RandomExpression::leaf() {
  if (isChance(70)) {
    return oneOf(LibraryParser::kVariables);
  }
  return isChance(40) ? oneOf(kConstants) : number();
}

std::string RandomExpression::number() {
  switch (below(6)) {
    case 0:
      return std::to_string(below(10));
    case 1:
      return "." + std::to_string(below(1000));
    case 2:
      return std::to_string(below(100)) + ".";
    case 3:
      return std::to_string(below(50)) + "." + std::to_string(below(50)) + "E-" +
             std::to_string(below(320));
    case 4:
      return std::to_string(below(10)) + "e+" + std::to_string(below(300));
    default:
      return "0x" + std::to_string(below(99999)) + (isChance(50) ? "Fa" : "");
  }
}

std::string RandomExpression::call(int depth) {
  const FunctionName function = oneOf(kFunctions);
  const int count =
      function.argumentCount > 0 ? function.argumentCount : 1 + static_cast<int>(below(4));
  return function.name + ("(" + arguments(count, depth - 1)) + ")";
}

std::string RandomExpression::arguments(int count, int depth) {
  std::string text = expression(depth);
  for (int i = 1; i < count; ++i) {
    text += "," + blank() + expression(depth);
  }
  return text;
}

std::vector<double> RandomExpression::row() {
  std::vector<double> values;
  for (std::size_t i = 0; i < LibraryParser::kVariables.size(); ++i) {
    if (isChance(50)) {
      values.push_back(std::bit_cast<double>(oneOf(kSpecialBits)));
      continue;
    }
    const double magnitude = isChance(20) ? 1e150 : isChance(50) ? 10.0 : 1.0;
    values.push_back(std::uniform_real_distribution(-magnitude, magnitude)(m_random));
  }
  return values;
}

}  // namespace kelvarin::jit
