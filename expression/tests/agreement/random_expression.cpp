#include "expression/tests/agreement/random_expression.h"

#include <bit>
#include <cstdint>

#include "base/null_number.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

constexpr const char* kOperators[] = {"+", "-", "*", "/", "%", "^", "+", "-", "*"};
constexpr const char* kComparisons[] = {"<", "<=", ">", ">=", "==", "!="};
constexpr const char* kBitOperators[] = {"&", "|", "<<", ">>"};
constexpr const char* kCasts[] = {"(int)", "(float)"};
constexpr const char* kUnits[] = {"{n}", "{u}", "{mu}", "{m}", "{k}", "{M}", "{G}"};
constexpr const char* kConstants[] = {"_pi", "_e", "pi", "_null", "_nan", "_infinity"};
constexpr const char* kExponents[] = {"2", "3",  "4", "0.5", "-1",    "2.0",
                                      "1", "-3", "5", "7",   "_null", "a"};
constexpr const char* kLibraryFunctions[] = {"sin",  "cos",  "tan",   "asin", "acos",
                                             "atan", "sinh", "cosh",  "tanh", "exp",
                                             "ln",   "log",  "log10", "sqrt"};

constexpr std::uint64_t kSpecialBits[] = {
    0x0000000000000000, 0x8000000000000000, 0x3FF0000000000000, 0xBFF0000000000000,
    0x0000000000000001, 0x8000000000000001, 0x000FFFFFFFFFFFFF,  // denormals
    0x7FEFFFFFFFFFFFFF, 0xFFEFFFFFFFFFFFFF, 0x0010000000000000,  // limits
    0x7FF0000000000000, 0xFFF0000000000000,                      // infinities
    kNotANumberBits,    0x7FF8000000000000, 0x7FFFFFFFFFFFFFFF, 0xFFF8000000000123,
    kNullNumberBits,    kNullNumberBits,    kNullNumberBits,    kNullNumberBits,
    0x4004000000000000, 0xC004000000000000, 0x3FDFFFFFFFFFFFFF, 0x3FE0000000000000,  // halves
    0x4000000000000000, 0x4008000000000000, 0x4010000000000000, 0x4330000000000001,
    0x43E0000000000000, 0xC3E0000000000000, 0x41EFFFFFFFE00000};  // the ends of integers

bool isOnTwoBackends(const FunctionLine& line) {
  return std::popcount(line.backends) >= 2 && line.body.number.index() != 0;
}

}  // namespace

RandomExpression::RandomExpression(unsigned seed) : m_random(seed) {
  for (const FunctionLine& line : functionTable()) {
    if (isOnTwoBackends(line)) {
      (line.result == ResultKind::test ? m_tests : m_functions).push_back(&line);
    }
  }
}

std::string RandomExpression::expression() {
  m_isLoose = isChance(25);
  const int depth = 1 + static_cast<int>(below(4));
  return isChance(80) ? number(depth) : condition(depth);
}

std::string RandomExpression::number(int depth) {
  if (depth <= 0) {
    return leaf();
  }
  if (m_isLoose && isChance(20)) {
    return condition(depth);
  }
  switch (below(12)) {
    case 0:
      return "-" + operand(depth - 1);
    case 1:
      return condition(depth - 1) + blank() + "?" + number(depth - 1) + ":" + number(depth - 1);
    case 2:
      return operand(depth - 1) + "^" + oneOf(kExponents);
    case 3:
      return operand(depth - 1) + oneOf(kUnits);
    case 4:
    case 5:
      return operand(depth);
    default:
      return number(depth - 1) + blank() + oneOf(kOperators) + blank() + number(depth - 1);
  }
}

// A condition that reads as one whatever stands beside it.
std::string RandomExpression::condition(int depth) {
  if (m_isLoose && isChance(30)) {
    return number(depth);
  }
  if (depth <= 0) {
    return truth(0);
  }
  switch (below(4)) {
    case 0:
      return truth(depth - 1) + blank() + (isChance(50) ? "&&" : "||") + blank() + truth(depth - 1);
    case 1:
      return truth(depth);
    default:
      return number(depth - 1) + blank() + oneOf(kComparisons) + blank() + number(depth - 1);
  }
}

std::string RandomExpression::truth(int depth) {
  if (isChance(30)) {
    return call(depth, *oneOf(m_tests));
  }
  return "(" + (depth <= 0 ? leaf() + oneOf(kComparisons) + leaf() : condition(depth)) + ")";
}

std::string RandomExpression::operand(int depth) {
  if (depth <= 0 || isChance(20)) {
    return leaf();
  }
  const unsigned kind = below(100);
  if (kind < 5) {
    return oneOf(kCasts) + operand(depth - 1);
  }
  if (kind < 10) {
    return "(" + leaf() + oneOf(kBitOperators) + operand(depth - 1) + ")";
  }
  if (kind < 28) {
    return "(" + number(depth - 1) + blank() + ")";
  }
  if (kind < 30) {
    return "(" + std::string(oneOf(kNumbers)) + blank() + "=" + number(depth - 1) + ")";
  }
  if (kind < 50) {
    return libraryCall(depth - 1);
  }
  return call(depth - 1, *oneOf(kind < 70 ? m_tests : m_functions));
}

std::string RandomExpression::call(int depth, const FunctionLine& line) {
  const int count =
      line.argumentCount == kAnyArgumentCount ? 1 + static_cast<int>(below(4)) : line.argumentCount;
  std::string text = line.name;
  text += blank() + "(";
  for (int i = 0; i < count; ++i) {
    text += (i > 0 ? "," : "") + blank() + number(depth - 1);
  }
  return text + ")";
}

std::string RandomExpression::libraryCall(int depth) {
  return oneOf(kLibraryFunctions) + ("(" + number(depth - 1)) + ")";
}

std::string RandomExpression::leaf() {
  if (isChance(70)) {
    return oneOf(kNumbers);
  }
  return isChance(40) ? oneOf(kConstants) : literal();
}

std::string RandomExpression::literal() {
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

std::vector<double> RandomExpression::row() {
  std::vector<double> values;
  for (std::size_t i = 0; i < kNumbers.size(); ++i) {
    const double magnitude = isChance(20) ? 1e150 : isChance(50) ? 10.0 : 1.0;
    values.push_back(isChance(50)
                         ? std::bit_cast<double>(oneOf(kSpecialBits))
                         : std::uniform_real_distribution(-magnitude, magnitude)(m_random));
  }
  return values;
}

}  // namespace kelvarin
