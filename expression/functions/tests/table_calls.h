// Calls functions of the table by name, as the String back-end does.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "expression/functions/function_table.h"

namespace kelvarin {

class TableCalls {
 public:
  explicit TableCalls(const TimeParameters& parameters = {}) {
    context.dates.configure(parameters);
    context.dates.prepare({.reference = true, .format = true});
  }

  // A number in the result is its text with six digits after the point.
  std::string text(std::string_view name, std::initializer_list<FunctionArgument> arguments) {
    const FunctionResult result = value(name, arguments);
    switch (result.kind()) {
      case FunctionResult::Kind::text:
        return result.text();
      case FunctionResult::Kind::number:
        return isNullNumber(result.number()) ? "null" : std::to_string(result.number());
      default:
        return "null";
    }
  }

  double number(std::string_view name, std::initializer_list<FunctionArgument> arguments) {
    return value(name, arguments).number();
  }

  FunctionContext context;

 private:
  FunctionResult value(std::string_view name, std::initializer_list<FunctionArgument> arguments) {
    FunctionResult result;
    for (const FunctionLine& line : functionTable()) {
      if (name == line.name) {
        call(line, std::vector<FunctionArgument>(arguments), result);
      }
    }
    return result;
  }

  void call(const FunctionLine& line, const std::vector<FunctionArgument>& arguments,
            FunctionResult& result) {
    if (line.body.value != nullptr) {
      line.body.value(context, arguments, result);
    } else if (const auto* body = std::get_if<ContextNumber0>(&line.body.number)) {
      result.setNumber((*body)(context));
    } else if (const auto* ofOne = std::get_if<ContextNumber1>(&line.body.number)) {
      result.setNumber((*ofOne)(context, arguments[0].number()));
    }
  }
};

inline FunctionArgument textArgument(std::string_view text) {
  return FunctionArgument(text);
}
inline FunctionArgument numberArgument(double number) {
  return FunctionArgument(number);
}

}  // namespace kelvarin
