#include "expression/batches/function_loops.h"

#include <array>
#include <memory_resource>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace kelvarin {

namespace {

template <typename Body, std::size_t... kIndex>
void callRows(Body body, const ColumnCall& call, std::index_sequence<kIndex...>) {
  for (std::size_t row = 0; row < call.rows; ++row) {
    if constexpr (std::is_invocable_v<Body, decltype(call.arguments[kIndex].numbers[row])...>) {
      call.numbers[row] = body(call.arguments[kIndex].numbers[row]...);
    } else {
      call.numbers[row] = body(call.context, call.arguments[kIndex].numbers[row]...);
    }
  }
}

// Few arguments take no memory beside the stack.
void callRows(NumberMany body, const ColumnCall& call) {
  std::array<std::byte, 32 * sizeof(double)> few;
  std::pmr::monotonic_buffer_resource memory(few.data(), few.size());
  std::pmr::vector<double> numbers(call.arguments.size(), &memory);
  for (std::size_t row = 0; row < call.rows; ++row) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      numbers[i] = call.arguments[i].numbers[row];
    }
    call.numbers[row] = body(numbers);
  }
}

void callNumberBody(const NumberBody& body, const ColumnCall& call) {
  std::visit(
      [&](auto function) {
        using Body = decltype(function);
        if constexpr (std::is_same_v<Body, NumberMany>) {
          callRows(function, call);
        } else if constexpr (!std::is_same_v<Body, std::monostate>) {
          constexpr std::size_t count = countOfArguments(decltype(function){});
          callRows(function, call, std::make_index_sequence<count>());
        }
      },
      body);
}

bool storeNumber(const FunctionResult& result, const ColumnCall& call, std::size_t row) {
  if (result.kind() == FunctionResult::Kind::number) {
    call.numbers[row] = result.number();
    return true;
  }
  if (result.kind() != FunctionResult::Kind::argument) {
    return false;
  }
  const double* chosen = call.arguments[static_cast<std::size_t>(result.argument())].numbers;
  if (chosen != nullptr) {
    call.numbers[row] = chosen[row];
  }
  return chosen != nullptr;
}

bool storeText(const FunctionResult& result, const ColumnCall& call, MadeTexts& made) {
  switch (result.kind()) {
    case FunctionResult::Kind::text:
      return result.text().size() <= call.longestText && made.add(call.arena.copy(result.text()));
    case FunctionResult::Kind::nullText:
      return made.addNull();
    case FunctionResult::Kind::number:
    case FunctionResult::Kind::failure:
      return false;
    case FunctionResult::Kind::argument:
      break;
  }
  const ColumnText* chosen = call.arguments[static_cast<std::size_t>(result.argument())].texts;
  return chosen != nullptr && made.add(chosen[made.rows()]);
}

std::size_t callValueBody(const ValueBody& body, const ColumnCall& call) {
  std::array<FunctionArgument, kMaximumArgumentCount> values;
  const std::span<const FunctionArgument> arguments(values.data(), call.arguments.size());
  FunctionResult result;
  MadeTexts made(call);
  for (std::size_t row = 0; row < call.rows; ++row) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      values[i] = call.arguments[i].at(row);
    }
    body(call.context, arguments, result);
    if (call.texts == nullptr) {
      if (!storeNumber(result, call, row)) {
        return row;
      }
    } else if (!storeText(result, call, made)) {
      return made.rows();
    }
  }
  return call.rows;
}

bool areNumbers(std::span<const ColumnArgument> arguments) {
  for (const ColumnArgument& argument : arguments) {
    if (argument.texts != nullptr) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::size_t callFunction(const FunctionLine& line, const ColumnCall& call) {
  if (line.body.columns.takes(call.arguments)) {
    return line.body.columns(call);
  }
  if (line.body.number.index() != 0 && areNumbers(call.arguments)) {
    callNumberBody(line.body.number, call);
    return call.rows;
  }
  return callValueBody(line.body.value, call);
}

}  // namespace kelvarin
