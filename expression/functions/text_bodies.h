// Turns plain functions over texts and numbers into bodies of the function table.
//
// The rules about missing values and types stand here once, for all themes of texts and dates:
//   valueBody<f>         a null in any argument makes null
//   testBody<f>          a null, or a number where f takes a text, is false
//   searchBody<f, miss>  a null makes null; a number where f takes a text makes `miss`
// A number where f of a valueBody takes a text is its shortest text; a text where f takes a number
// counts as null.
//
// f takes `const QString&` (16-bit units) or `std::string_view` (UTF-8) and `double`, after an
// optional FunctionContext&. It returns a double, a bool, a QString or an optional text in UTF-8.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include <QString>

#include "expression/functions/function_context.h"
#include "expression/functions/function_values.h"

namespace kelvarin {

// Nested functions can double a text again and again, so what grows beyond 64 MiB is null. A text
// that is longer from the start may stay as long as it is.
inline std::size_t longestResultOf(std::string_view text) {
  constexpr std::size_t longestGrown = std::size_t{64} << 20;
  return std::max(longestGrown, text.size());
}

void setResult(FunctionResult& result, double number);
void setResult(FunctionResult& result, bool isTrue);
// A null QString is the null text; half a surrogate pair becomes U+FFFD.
void setResult(FunctionResult& result, const QString& text);
void setResult(FunctionResult& result, const std::optional<std::string>& text);

// One argument in the form in which a function takes it.
template <typename Parameter>
class ArgumentReader;

template <>
class ArgumentReader<double> {
 public:
  static constexpr bool kTakesText = false;
  explicit ArgumentReader(const FunctionArgument& argument) : m_number(argument.number()) {}
  double get() const { return m_number; }

 private:
  double m_number;
};

template <>
class ArgumentReader<QString> {
 public:
  static constexpr bool kTakesText = true;
  explicit ArgumentReader(const FunctionArgument& argument);
  const QString& get() const { return m_text; }

 private:
  QString m_text;
};

template <>
class ArgumentReader<std::string_view> {
 public:
  static constexpr bool kTakesText = true;
  explicit ArgumentReader(const FunctionArgument& argument);
  std::string_view get() const { return m_isNumber ? std::string_view(m_digits) : m_text; }

 private:
  bool m_isNumber;
  std::string m_digits;
  std::string_view m_text;
};

template <typename Function>
struct FunctionShape;

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(Parameters...)> {
  using Readers = std::tuple<ArgumentReader<std::remove_cvref_t<Parameters>>...>;
  using Result = R;
  static constexpr bool kTakesContext = false;
};

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(FunctionContext&, Parameters...)> {
  using Readers = std::tuple<ArgumentReader<std::remove_cvref_t<Parameters>>...>;
  using Result = R;
  static constexpr bool kTakesContext = true;
};

template <auto function>
class BodyOf {
 public:
  using Arguments = std::span<const FunctionArgument>;

  static bool hasNull(Arguments arguments) {
    return any(arguments, [](const FunctionArgument& argument, bool takesText) {
      return argument.isNull() || (argument.isText() && !takesText);
    });
  }

  static bool hasNumberForText(Arguments arguments) {
    return any(arguments, [](const FunctionArgument& argument, bool takesText) {
      return takesText && !argument.isText();
    });
  }

  static void setNull(FunctionResult& result) {
    if constexpr (std::is_same_v<typename Shape::Result, double>) {
      result.setNumber(kNullNumber);
    } else {
      result.setNullText();
    }
  }

  static void call(FunctionContext& context, Arguments arguments, FunctionResult& result) {
    callWith(context, arguments, result, Indices{});
  }

 private:
  using Shape = FunctionShape<decltype(function)>;
  using Readers = typename Shape::Readers;
  using Indices = std::make_index_sequence<std::tuple_size_v<Readers>>;

  template <typename Test>
  static bool any(Arguments arguments, Test test) {
    return anyOf(arguments, test, Indices{});
  }

  template <typename Test, std::size_t... kIndex>
  static bool anyOf(Arguments arguments, Test test, std::index_sequence<kIndex...>) {
    return (test(arguments[kIndex], std::tuple_element_t<kIndex, Readers>::kTakesText) || ...);
  }

  template <std::size_t... kIndex>
  static void callWith(FunctionContext& context, Arguments arguments, FunctionResult& result,
                       std::index_sequence<kIndex...>) {
    const Readers readers{std::tuple_element_t<kIndex, Readers>(arguments[kIndex])...};
    if constexpr (Shape::kTakesContext) {
      setResult(result, function(context, std::get<kIndex>(readers).get()...));
    } else {
      setResult(result, function(std::get<kIndex>(readers).get()...));
    }
  }
};

template <auto function>
void valueBody(FunctionContext& context, std::span<const FunctionArgument> arguments,
               FunctionResult& result) {
  if (BodyOf<function>::hasNull(arguments)) {
    BodyOf<function>::setNull(result);
  } else {
    BodyOf<function>::call(context, arguments, result);
  }
}

template <auto function>
void testBody(FunctionContext& context, std::span<const FunctionArgument> arguments,
              FunctionResult& result) {
  if (BodyOf<function>::hasNull(arguments) || BodyOf<function>::hasNumberForText(arguments)) {
    result.setNumber(0.0);
  } else {
    BodyOf<function>::call(context, arguments, result);
  }
}

template <auto function, int miss>
void searchBody(FunctionContext& context, std::span<const FunctionArgument> arguments,
                FunctionResult& result) {
  if (BodyOf<function>::hasNull(arguments)) {
    BodyOf<function>::setNull(result);
  } else if (BodyOf<function>::hasNumberForText(arguments)) {
    result.setNumber(miss);
  } else {
    BodyOf<function>::call(context, arguments, result);
  }
}

}  // namespace kelvarin
