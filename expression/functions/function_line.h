// One function of the expression language: a line of data and its body.
//
// Bodies are plain functions without a type of any expression library; the adapters in
// expression/backends turn lines into registrations. A body's answer to nonsense is null, NaN or 0;
// a row fails only where an argument is a program of its own that has a fault, as a regular
// expression. To add a function, follow CONTRIBUTING.md.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include <QString>

#include "expression/dates/date_needs.h"
#include "expression/functions/column_call.h"
#include "expression/functions/function_context.h"
#include "expression/functions/function_values.h"
#include "jit/functions.h"

namespace kelvarin {

// The back-ends that have a function, as flags.
inline constexpr unsigned kInNative = 1;
inline constexpr unsigned kInFast = 2;
inline constexpr unsigned kInString = 4;
inline constexpr unsigned kFastAndString = kInFast | kInString;
inline constexpr unsigned kInAll = kInNative | kFastAndString;

enum class ResultKind {
  number,
  test,  // a number that also serves as a condition
  text,
  argument  // one of the arguments
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

// The same for columns of values; it returns how many rows it did, fewer as MadeTexts says. Only
// for arguments of the types that it was made for: those with a bit in `textArguments` are texts,
// all others numbers.
class ColumnBody {
 public:
  using Function = std::size_t (*)(const ColumnCall&);

  constexpr ColumnBody() = default;
  constexpr ColumnBody(Function function, unsigned textArguments)
      : m_function(function), m_textArguments(textArguments), m_isPresent(true) {}

  // Of arguments of any types for which the function has a type.
  constexpr ColumnBody(Function function)
      : m_function(function), m_isPresent(true), m_takesAnyTypes(true) {}

  bool takes(std::span<const ColumnArgument> arguments) const {
    unsigned texts = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      texts |= (arguments[i].texts != nullptr ? 1u : 0u) << i;
    }
    return m_isPresent && (m_takesAnyTypes || texts == m_textArguments);
  }
  std::size_t operator()(const ColumnCall& call) const { return m_function(call); }

 private:
  Function m_function = nullptr;
  unsigned m_textArguments = 0;
  bool m_isPresent = false;
  bool m_takesAnyTypes = false;
};

// One argument or more.
inline constexpr int kAnyArgumentCount = -1;

// What computes a function: a body of numbers, one of values, or both. One of values may have a
// faster form for columns, made of the same plain function. The native compiler may know
// a function of numbers as one whose machine code it writes itself; otherwise it calls the body.
struct FunctionBody {
  template <typename... Parameters>
  constexpr FunctionBody(double (*function)(Parameters...),
                         jit::Intrinsic written = jit::Intrinsic::none)
      : number(function), intrinsic(written) {}
  constexpr FunctionBody(ValueBody::Function function) : value(function) {}
  constexpr FunctionBody(ValueBody::Function function, ColumnBody ofColumns)
      : value(function), columns(ofColumns) {}
  template <typename... Parameters>
  constexpr FunctionBody(double (*function)(Parameters...), ValueBody::Function ofValues,
                         jit::Intrinsic written = jit::Intrinsic::none)
      : FunctionBody(function, ofValues, ColumnBody(), written) {}
  template <typename... Parameters>
  constexpr FunctionBody(double (*function)(Parameters...), ValueBody::Function ofValues,
                         ColumnBody ofColumns, jit::Intrinsic written = jit::Intrinsic::none)
      : number(function), value(ofValues), columns(ofColumns), intrinsic(written) {}

  NumberBody number;
  ValueBody value = nullptr;
  ColumnBody columns = {};
  jit::Intrinsic intrinsic = jit::Intrinsic::none;
};

// What a result depends on beside the arguments and the settings.
enum class Source : unsigned char { arguments, randomNumbers, files };

// What is wrong with an argument that an expression states as a text literal.
struct ConstantFault {
  std::size_t argument = 0;
  QString message;
  std::optional<std::size_t> position = {};  // in 16-bit units of the text
};
// `constants` has a text for each argument that is one. Nothing where rows can be computed.
using ConstantCheck =
    std::optional<ConstantFault> (*)(std::span<const std::optional<std::string>> constants);

struct FunctionLine {
  const char* name;
  int argumentCount;  // as declared to the parsers, or kAnyArgumentCount
  unsigned backends;
  ResultKind result;
  FunctionBody body;
  const char* help;
  DateNeeds needs = {};
  Source source = Source::arguments;
  ConstantCheck checkOfConstants = nullptr;

  // The String Parser can compute it, which alone shows an expression step by step.
  constexpr bool isDebuggable() const { return (backends & kInString) != 0; }
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
  const int bodyCount = argumentCountOf(line.body.number);
  const bool hasNumber = bodyCount != kNoBody;
  const bool isTextOnly = line.backends == kInString ||
                          (line.backends == (kInFast | kInString) && line.argumentCount == 1);
  const bool isComplete = hasNumber || (line.body.value != nullptr && isTextOnly);
  const bool isArityRight = !hasNumber || bodyCount == line.argumentCount;
  const bool isNative = (line.backends & kInNative) != 0;
  const bool isNativeRight = !isNative || isNativeBody(line.body.number);
  const jit::Intrinsic intrinsic = line.body.intrinsic;
  const bool isIntrinsicRight = intrinsic == jit::Intrinsic::none ||
                                (isNative && jit::argumentCountOf(intrinsic) == line.argumentCount);
  return isNameOfFunction(line.name) && line.argumentCount >= kAnyArgumentCount &&
         line.argumentCount <= kMaximumArgumentCount && line.backends != 0 && isComplete &&
         isArityRight && isNativeRight && isIntrinsicRight && !std::string_view(line.help).empty();
}

constexpr bool areSound(std::span<const FunctionLine> lines) {
  if (!std::all_of(lines.begin(), lines.end(), isSound)) {
    return false;
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
