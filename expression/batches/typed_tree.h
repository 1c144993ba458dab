// An expression whose parts and their types are all known before a row is evaluated.
//
// Made by TypedParser, turned into a ColumnProgram. Operands come before what is computed of them,
// and what stands in the expression several times is one node.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "expression/functions/function_line.h"

namespace kelvarin {

// As the String Parser distinguishes values.
enum class ValueType : std::uint8_t {
  number,
  test,       // a number that also serves as a condition
  maybeTest,  // one of both, depending on the row
  truth,      // of a comparison or a logical operator: a condition, but no number to most operators
  text
};

constexpr bool isNumeric(ValueType type) {
  return type != ValueType::text;
}
// Operators and functions take it for a number.
constexpr bool countsAsNumber(ValueType type) {
  return type != ValueType::text && type != ValueType::truth;
}
constexpr bool isCondition(ValueType type) {
  return type == ValueType::test || type == ValueType::truth;
}

enum class Operation : std::uint8_t {
  constant,
  variable,
  // Of one number.
  negate,
  toInteger,
  libraryFunction,
  // Of two numbers.
  add,
  subtract,
  multiply,
  divide,
  remainder,
  power,
  bitAnd,
  bitOr,
  shiftLeft,
  shiftRight,
  both,
  either,
  // Of two numbers or two texts.
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
  equal,
  notEqual,
  // Of any count of texts.
  join,
  // Of a condition and two values of one type.
  choose,
  tableFunction
};

struct TreeNode {
  Operation operation = Operation::constant;
  ValueType type = ValueType::number;
  std::vector<std::size_t> operands = {};  // indices of nodes
  // Of a constant.
  double number = 0.0;
  std::string text = {};
  bool isNullText = false;
  std::size_t variable = 0;            // its index in the store
  Number1 libraryFunction = nullptr;   // of the expression library's own
  const FunctionLine* line = nullptr;  // of a tableFunction

  bool isLeaf() const {
    return operation == Operation::constant || operation == Operation::variable;
  }
};

struct TypedTree {
  std::vector<TreeNode> nodes;
  std::size_t root = 0;
  // How many texts the evaluation of one row makes at most, each as often as it stands there.
  std::size_t madeTexts = 0;

  ValueType type() const { return nodes[root].type; }
};

}  // namespace kelvarin
