#include "expression/batches/text_loops.h"

#include <cstring>
#include <functional>
#include <span>
#include <string_view>

#include "expression/backends/string_values.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

// The String Parser compares the null text by the bytes that it has there.
std::string_view comparedBytes(const ColumnText& text) {
  return text.isNull() ? kNullTextBytes : text.view();
}

template <typename Compare>
std::size_t compareRows(const ColumnCall& call) {
  const ColumnText* left = call.arguments[0].texts;
  const ColumnText* right = call.arguments[1].texts;
  for (std::size_t i = 0; i < call.rows; ++i) {
    call.numbers[i] = jit::numberOf(Compare()(comparedBytes(left[i]), comparedBytes(right[i])));
  }
  return call.rows;
}

bool hasNull(std::span<const ColumnArgument> arguments, std::size_t row) {
  for (const ColumnArgument& argument : arguments) {
    if (argument.texts[row].isNull()) {
      return true;
    }
  }
  return false;
}

// Joining two by two from the left makes the bytes of the null text on the way.
bool passesNull(std::span<const ColumnArgument> arguments, std::size_t row) {
  std::size_t size = 0;
  for (const ColumnArgument& argument : arguments) {
    size += argument.texts[row].view().size();
    if (&argument != &arguments.front() && size == kNullTextBytes.size()) {
      return true;
    }
  }
  return false;
}

std::string_view joined(std::span<const ColumnArgument> arguments, std::size_t row,
                        std::size_t size, TextArena& arena) {
  char* bytes = arena.allocate(size);
  char* next = bytes;
  for (const ColumnArgument& argument : arguments) {
    const std::string_view text = argument.texts[row].view();
    if (!text.empty()) {
      std::memcpy(next, text.data(), text.size());
      next += text.size();
    }
  }
  return {bytes, size};
}

template <typename Value>
void choose(const double* isFirst, const Value* first, const Value* second, std::size_t rows,
            Value* results) {
  for (std::size_t i = 0; i < rows; ++i) {
    results[i] = jit::isTruth(isFirst[i]) ? first[i] : second[i];
  }
}

}  // namespace

std::size_t compareTexts(Operation comparison, const ColumnCall& call) {
  switch (comparison) {
    case Operation::less:
      return compareRows<std::less<>>(call);
    case Operation::lessOrEqual:
      return compareRows<std::less_equal<>>(call);
    case Operation::greater:
      return compareRows<std::greater<>>(call);
    case Operation::greaterOrEqual:
      return compareRows<std::greater_equal<>>(call);
    case Operation::equal:
      return compareRows<std::equal_to<>>(call);
    default:
      return compareRows<std::not_equal_to<>>(call);
  }
}

std::size_t joinTexts(const ColumnCall& call) {
  MadeTexts made(call);
  for (std::size_t row = 0; row < call.rows; ++row) {
    if (hasNull(call.arguments, row)) {
      made.addNull();
      continue;
    }
    std::size_t size = 0;
    for (const ColumnArgument& argument : call.arguments) {
      size += argument.texts[row].view().size();
    }
    if (size > call.longestText) {
      break;
    }
    const std::string_view text = joined(call.arguments, row, size, call.arena);
    if (text.starts_with(kNullTextBytes) && passesNull(call.arguments, row)) [[unlikely]] {
      made.addNull();
    } else if (!made.add(text)) {
      break;
    }
  }
  return made.rows();
}

std::size_t chooseValues(const ColumnCall& call) {
  const double* isFirst = call.arguments[0].numbers;
  const ColumnArgument& first = call.arguments[1];
  const ColumnArgument& second = call.arguments[2];
  if (call.texts != nullptr) {
    choose(isFirst, first.texts, second.texts, call.rows, call.texts);
  } else {
    choose(isFirst, first.numbers, second.numbers, call.rows, call.numbers);
  }
  return call.rows;
}

}  // namespace kelvarin
