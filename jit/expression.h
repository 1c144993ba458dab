// A parsed expression: its tree written down in the order of evaluation, for a stack of values.
//
// Made by parser.cpp; evaluated as it stands by reference_evaluator.cpp and turned into a graph by
// lowering.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jit/functions.h"

namespace kelvarin::jit {

enum class StepKind : std::uint8_t {
  constant,
  variable,
  // Take one value.
  negate,
  // Take two values.
  add,
  subtract,
  multiply,
  divide,
  remainder,
  power,
  smaller,  // of the value so far and the next argument
  larger,
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
  equal,
  notEqual,
  both,
  either,
  // Takes as many values as the function has arguments.
  call,
  // `c ? a : b` is: c, skipUnless(to b), a, skip(past b), b, choose.
  skipUnless,  // takes the condition
  skip,
  choose
};

struct Step {
  StepKind kind = StepKind::constant;
  double number = 0.0;      // of a constant
  std::size_t element = 0;  // of a variable; the target of skipUnless and skip, counted in steps
  NamedFunction function = {};  // of a call
};

struct Expression {
  std::vector<Step> steps;
  std::vector<std::size_t> elements;  // of the variables, each once
};

// The values that may wait on the stack at once.
inline constexpr std::size_t kMaximumStackDepth = 512;

}  // namespace kelvarin::jit
