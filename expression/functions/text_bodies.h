// Turns plain functions over texts and numbers into bodies of the function table.
//
// The rules about missing values and types stand here once, for all themes of texts and dates:
//   valueBody<f>         a null in any argument makes null
//   testBody<f>          a null, or a number where f takes a text, is false
//   searchBody<f, miss>  a null makes null; a number where f takes a text makes `miss`
// A number where f of a valueBody takes a text is its shortest text; a text where f takes a number
// counts as null.
//
// f takes arguments for which there is an ArgumentReader, after an optional FunctionContext& and an
// optional TextArena&. It returns a double, a bool, a QString or a ColumnText: a part of an
// argument or a text in the arena. Where an argument can be one that no row can be computed with,
// it returns an Outcome of these.
//
// Where f takes and returns no QString, the body for columns is made of it as well: valueBodies<f>,
// testBodies<f> and searchBodies<f, miss> have both.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include <QString>

#include "base/result.h"
#include "expression/functions/argument_readers.h"
#include "expression/functions/column_call.h"
#include "expression/functions/function_context.h"
#include "expression/functions/function_line.h"
#include "expression/functions/function_values.h"

namespace kelvarin {

// Nested functions can double a text again and again, so what grows beyond 64 MiB is null. A text
// that is longer from the start may stay as long as it is.
inline std::size_t longestResultOf(std::string_view text) {
  constexpr std::size_t longestGrown = std::size_t{64} << 20;
  return std::max(longestGrown, text.size());
}

// A result, or the message of the row's failure.
template <typename T>
using Outcome = Result<T, QString>;

void setResult(FunctionResult& result, double number);
void setResult(FunctionResult& result, bool isTrue);
// A null QString is the null text; half a surrogate pair becomes U+FFFD.
void setResult(FunctionResult& result, const QString& text);
void setResult(FunctionResult& result, const ColumnText& text);

// What a function returned, or null where the row fails.
template <typename T>
const T* valueIn(const T& value) {
  return &value;
}
template <typename T>
const T* valueIn(const Outcome<T>& outcome) {
  return outcome ? &*outcome : nullptr;
}

template <typename T>
void setResult(FunctionResult& result, const Outcome<T>& outcome) {
  if (const T* value = valueIn(outcome)) {
    setResult(result, *value);
  } else {
    result.setFailure(outcome.error());
  }
}

// The same for a text in an arena, or one that is there already.
ColumnText textIn(TextArena& arena, const QString& text);
inline ColumnText textIn(TextArena&, const ColumnText& text) {
  return text;
}

template <typename Function>
struct FunctionShape;

template <typename R>
struct ValueOf {
  using Type = R;
};
template <typename T>
struct ValueOf<Outcome<T>> {
  using Type = T;
};

// What a function takes before its arguments.
enum class Leading { nothing, context, arena, contextAndArena };

template <Leading leading, typename R, typename... Parameters>
struct ShapeOf {
  using Readers = std::tuple<ArgumentReader<std::remove_cvref_t<Parameters>>...>;
  using ColumnReaders = std::tuple<ColumnReader<std::remove_cvref_t<Parameters>>...>;
  using Value = typename ValueOf<R>::Type;
  static constexpr Leading kLeading = leading;

  template <auto function, typename... Arguments>
  static R call(FunctionContext& context, TextArena& arena, const Arguments&... arguments) {
    if constexpr (leading == Leading::nothing) {
      return function(arguments...);
    } else if constexpr (leading == Leading::context) {
      return function(context, arguments...);
    } else if constexpr (leading == Leading::arena) {
      return function(arena, arguments...);
    } else {
      return function(context, arena, arguments...);
    }
  }
};

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(Parameters...)> : ShapeOf<Leading::nothing, R, Parameters...> {};

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(FunctionContext&, Parameters...)>
    : ShapeOf<Leading::context, R, Parameters...> {};

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(TextArena&, Parameters...)> : ShapeOf<Leading::arena, R, Parameters...> {
};

template <typename R, typename... Parameters>
struct FunctionShape<R (*)(FunctionContext&, TextArena&, Parameters...)>
    : ShapeOf<Leading::contextAndArena, R, Parameters...> {};

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
    if constexpr (std::is_same_v<typename Shape::Value, double>) {
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
    const Readers readers{std::tuple_element_t<kIndex, Readers>(context, arguments[kIndex])...};
    if constexpr (Shape::kLeading == Leading::arena ||
                  Shape::kLeading == Leading::contextAndArena) {
      result.arena().clear();
    }
    setResult(result, Shape::template call<function>(context, result.arena(),
                                                     std::get<kIndex>(readers).get()...));
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

// The rows of a column call with a plain function.
template <auto function>
class ColumnsOf {
 public:
  static constexpr unsigned textArguments() { return textBits(Indices{}); }

  // `ofNull` is the number of a row with a null; none: the function is called for it, too.
  static std::size_t call(const ColumnCall& call, std::optional<double> ofNull) {
    return callWith(call, ofNull, Indices{});
  }

 private:
  using Shape = FunctionShape<decltype(function)>;
  using Value = typename Shape::Value;
  using Readers = typename Shape::ColumnReaders;
  using Indices = std::make_index_sequence<std::tuple_size_v<Readers>>;

  template <std::size_t... kIndex>
  static constexpr unsigned textBits(std::index_sequence<kIndex...>) {
    return ((std::tuple_element_t<kIndex, Readers>::kTakesText ? 1u << kIndex : 0u) | ... | 0u);
  }

  template <std::size_t... kIndex>
  static std::size_t callWith(const ColumnCall& call, std::optional<double> ofNull,
                              std::index_sequence<kIndex...>) {
    const Readers readers{
        std::tuple_element_t<kIndex, Readers>(call.context, call.arguments[kIndex])...};
    const auto isNull = [&](std::size_t row) {
      return ofNull && (std::get<kIndex>(readers).isNull(row) || ...);
    };
    const auto outcome = [&](std::size_t row) {
      return Shape::template call<function>(call.context, call.arena,
                                            std::get<kIndex>(readers).at(row)...);
    };
    if constexpr (std::is_arithmetic_v<Value>) {
      return storeNumbers(call, ofNull.value_or(kNullNumber), isNull, outcome);
    } else {
      return storeTexts(call, isNull, outcome);
    }
  }

  template <typename IsNull, typename OutcomeAt>
  static std::size_t storeNumbers(const ColumnCall& call, double ofNull, IsNull isNull,
                                  OutcomeAt outcomeAt) {
    for (std::size_t row = 0; row < call.rows; ++row) {
      if (isNull(row)) {
        call.numbers[row] = ofNull;
        continue;
      }
      const auto outcome = outcomeAt(row);
      const Value* value = valueIn(outcome);
      if (value == nullptr) {
        return row;
      }
      call.numbers[row] = static_cast<double>(*value);
    }
    return call.rows;
  }

  template <typename IsNull, typename OutcomeAt>
  static std::size_t storeTexts(const ColumnCall& call, IsNull isNull, OutcomeAt outcomeAt) {
    MadeTexts made(call);
    for (std::size_t row = 0; row < call.rows; ++row) {
      ColumnText text;
      if (!isNull(row)) {
        const auto outcome = outcomeAt(row);
        const Value* value = valueIn(outcome);
        if (value == nullptr) {
          break;
        }
        text = textIn(call.arena, *value);
      }
      if (!(text.isNull() ? made.addNull() : made.add(text.view()))) {
        break;
      }
    }
    return made.rows();
  }
};

template <auto function>
std::size_t valueColumns(const ColumnCall& call) {
  return ColumnsOf<function>::call(call, kNullNumber);
}

// A null text comes as the empty one.
template <auto function>
std::size_t columnsWithNulls(const ColumnCall& call) {
  return ColumnsOf<function>::call(call, std::nullopt);
}

template <auto function>
std::size_t testColumns(const ColumnCall& call) {
  return ColumnsOf<function>::call(call, 0.0);
}

template <auto function>
inline constexpr FunctionBody valueBodies{
    valueBody<function>, ColumnBody{valueColumns<function>, ColumnsOf<function>::textArguments()}};

template <auto function>
inline constexpr FunctionBody testBodies{
    testBody<function>, ColumnBody{testColumns<function>, ColumnsOf<function>::textArguments()}};

template <auto function, int miss>
inline constexpr FunctionBody searchBodies{
    searchBody<function, miss>,
    ColumnBody{valueColumns<function>, ColumnsOf<function>::textArguments()}};

// For functions that take one text, the null text too, and never fail.
template <double (*valueOf)(const ColumnText&)>
std::size_t numberColumns(const ColumnCall& call) {
  const ColumnText* texts = call.arguments[0].texts;
  std::transform(texts, texts + call.rows, call.numbers, valueOf);
  return call.rows;
}

template <double (*valueOf)(const ColumnText&)>
inline constexpr ColumnBody kNumberOfText{numberColumns<valueOf>, 0b1};

}  // namespace kelvarin
