// One function of the expression language: a line of data and one or two bodies.
//
// Bodies are plain functions without a type of any expression library; the adapters in
// expression/backends turn lines into registrations. A body never fails: null, NaN or 0. To add a
// function, write its body and its line in the file of its theme; see function_table.cpp.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>
#include <variant>

#include "expression/functions/function_context.h"
#include "expression/functions/function_values.h"

namespace kelvarin {

// The back-ends that have a function, as flags.
inline constexpr unsigned kInNative = 1;
inline constexpr unsigned kInFast = 2;
inline constexpr unsigned kInString = 4;
inline constexpr unsigned kInAll = kInNative | kInFast | kInString;

enum class ResultKind {
  number,
  test,  // a number that also serves as a condition
  text,
  any  // one of the arguments
};

using Number0 = double (*)();
using Number1 = double (*)(double);
using Number2 = double (*)(double, double);
using Number3 = double (*)(double, double, double);
using Number4 = double (*)(double, double, double, double);
using NumberMany = double (*)(std::span<const double>);
using ContextNumber0 = double (*)(FunctionContext&);
using ContextNumber1 = double (*)(FunctionContext&, double);
using ContextNumber2 = double (*)(FunctionContext&, double, double);
using ContextNumber3 = double (*)(FunctionContext&, double, double, double);
using ContextNumber4 = double (*)(FunctionContext&, double, double, double, double);

// Numbers in, a number out. The native back-end takes one to three numbers without context, and
// knows those that take any number of them.
using NumberBody =
    std::variant<std::monostate, Number0, Number1, Number2, Number3, Number4, NumberMany,
                 ContextNumber0, ContextNumber1, ContextNumber2, ContextNumber3, ContextNumber4>;

// Values of any type. The String back-end calls it when an argument is a text or there is no other
// body; the Fast back-end, when it is the only body, with its one argument a text literal.
// It says by a flag of its own whether it is there: under a sanitizer the compiler does not know
// before the program runs that a function's address is not null.
class ValueBody {
 public:
  using Function = void (*)(FunctionContext&, std::span<const FunctionArgument>, FunctionResult&);

  constexpr ValueBody(std::nullptr_t) {}
  constexpr ValueBody(Function function) : m_function(function), m_isPresent(true) {}

  friend constexpr bool operator==(const ValueBody& body, std::nullptr_t) {
    return !body.m_isPresent;
  }
  void operator()(FunctionContext& context, std::span<const FunctionArgument> arguments,
                  FunctionResult& result) const {
    m_function(context, arguments, result);
  }

 private:
  Function m_function = nullptr;
  bool m_isPresent = false;
};

// One argument or more.
inline constexpr int kAnyArgumentCount = -1;

struct FunctionLine {
  const char* name;
  int argumentCount;  // as declared to the parsers, or kAnyArgumentCount
  unsigned backends;
  ResultKind result;
  NumberBody number;
  ValueBody value;  // may be null when there is a number body
  const char* help;
};

inline constexpr int kMaximumArgumentCount = 4;

template <typename... Arguments>
constexpr int countOfArguments(double (*)(Arguments...)) {
  return sizeof...(Arguments);
}
template <typename... Arguments>
constexpr int countOfArguments(double (*)(FunctionContext&, Arguments...)) {
  return sizeof...(Arguments);
}

constexpr int countOfArguments(NumberMany) {
  return kAnyArgumentCount;
}

inline constexpr int kNoBody = -2;

constexpr int argumentCountOf(const NumberBody& body) {
  return std::visit(
      [](auto function) {
        if constexpr (std::is_same_v<decltype(function), std::monostate>) {
          return kNoBody;
        } else {
          return countOfArguments(function);
        }
      },
      body);
}

constexpr bool isNameOfFunction(std::string_view name) {
  for (const char c : name) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    const bool isDigit = c >= '0' && c <= '9';
    if (!isLetter && !(isDigit && c != name.front())) {
      return false;
    }
  }
  return !name.empty();
}

constexpr bool isNativeBody(const NumberBody& body) {
  return std::holds_alternative<Number1>(body) || std::holds_alternative<Number2>(body) ||
         std::holds_alternative<Number3>(body) || std::holds_alternative<NumberMany>(body);
}

// A mistake in a line stops the build: every theme asserts that its lines are sound.
constexpr bool isSound(const FunctionLine& line) {
  const int bodyCount = argumentCountOf(line.number);
  const bool hasNumber = bodyCount != kNoBody;
  const bool isTextOnly = line.backends == kInString ||
                          (line.backends == (kInFast | kInString) && line.argumentCount == 1);
  const bool isComplete = hasNumber || (line.value != nullptr && isTextOnly);
  const bool isArityRight = !hasNumber || bodyCount == line.argumentCount;
  const bool isNativeRight = (line.backends & kInNative) == 0 || isNativeBody(line.number);
  return isNameOfFunction(line.name) && line.argumentCount >= kAnyArgumentCount &&
         line.argumentCount <= kMaximumArgumentCount && line.backends != 0 && isComplete &&
         isArityRight && isNativeRight && !std::string_view(line.help).empty();
}

constexpr bool areSound(std::span<const FunctionLine> lines) {
  for (const FunctionLine& line : lines) {
    if (!isSound(line)) {
      return false;
    }
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (std::size_t k = i + 1; k < lines.size(); ++k) {
      if (std::string_view(lines[i].name) == lines[k].name) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace kelvarin
