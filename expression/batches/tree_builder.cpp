#include "expression/batches/tree_builder.h"

#include <algorithm>
#include <bit>
#include <span>
#include <utility>

#include "expression/backends/string_values.h"

namespace kelvarin {

namespace {

using Types = std::span<const ValueType>;

bool hasText(Types types) {
  return std::ranges::count(types, ValueType::text) > 0;
}

// Of a value that is one of both.
std::optional<ValueType> commonType(ValueType first, ValueType second) {
  if (first == second) {
    return first;
  }
  return countsAsNumber(first) && countsAsNumber(second) ? std::optional(ValueType::maybeTest)
                                                         : std::nullopt;
}

// A choice among numbers is a test as soon as one argument is a condition.
ValueType typeOfChosenNumber(Types types) {
  if (std::ranges::any_of(types, isCondition)) {
    return ValueType::test;
  }
  return std::ranges::count(types, ValueType::maybeTest) > 0 ? ValueType::maybeTest
                                                             : ValueType::number;
}

std::optional<ValueType> typeOfNumbersCall(const FunctionLine& line, Types types) {
  const bool isOfMany = std::holds_alternative<NumberMany>(line.body.number);
  if (isOfMany && !std::ranges::all_of(types, countsAsNumber)) {
    return std::nullopt;
  }
  switch (line.result) {
    case ResultKind::test:
      return ValueType::test;
    case ResultKind::argument:
      return typeOfChosenNumber(types);
    default:
      return ValueType::number;
  }
}

std::optional<ValueType> typeOfValuesCall(const FunctionLine& line, Types types) {
  switch (line.result) {
    case ResultKind::number:
      return ValueType::number;
    case ResultKind::test:
      return ValueType::test;
    case ResultKind::text:
      return ValueType::text;
    case ResultKind::argument:
      break;
  }
  return commonType(types[types.size() - 2], types[types.size() - 1]);
}

std::optional<ValueType> typeOfCall(const FunctionLine& line, Types types) {
  if (line.body.number.index() != 0 && !hasText(types)) {
    return typeOfNumbersCall(line, types);
  }
  return line.body.value == nullptr ? std::nullopt : typeOfValuesCall(line, types);
}

}  // namespace

NodeIndex TreeBuilder::add(TreeNode node) {
  const bool isMade = node.type == ValueType::text && (node.operation == Operation::join ||
                                                       node.operation == Operation::tableFunction);
  m_tree.madeTexts += isMade ? 1 : 0;
  Key key{node.operation, node.type,
          node.operands,  std::bit_cast<std::uint64_t>(node.number),
          node.text,      node.isNullText,
          node.variable,  reinterpret_cast<const void*>(node.libraryFunction),
          node.line};
  const auto [known, isNew] = m_known.try_emplace(std::move(key), m_tree.nodes.size());
  if (isNew) {
    m_tree.nodes.push_back(std::move(node));
  }
  return known->second;
}

NodeIndex TreeBuilder::number(double value, ValueType type) {
  return add({.type = type, .number = value});
}

NodeIndex TreeBuilder::text(std::string value) {
  return value == kNullTextBytes ? nullText()
                                 : add({.type = ValueType::text, .text = std::move(value)});
}

NodeIndex TreeBuilder::nullText() {
  return add({.type = ValueType::text, .isNullText = true});
}

NodeIndex TreeBuilder::variable(std::size_t storeIndex, bool isText) {
  return add({.operation = Operation::variable,
              .type = isText ? ValueType::text : ValueType::number,
              .variable = storeIndex});
}

std::vector<ValueType> TreeBuilder::typesOf(const std::vector<NodeIndex>& nodes) const {
  std::vector<ValueType> types;
  types.reserve(nodes.size());
  for (const NodeIndex node : nodes) {
    types.push_back(typeOf(node));
  }
  return types;
}

NewNode TreeBuilder::ofNumbers(Operation operation, std::vector<NodeIndex> operands) {
  if (!std::ranges::all_of(typesOf(operands), countsAsNumber)) {
    return std::nullopt;
  }
  return add({.operation = operation, .operands = std::move(operands)});
}

NewNode TreeBuilder::negated(NodeIndex operand) {
  return ofNumbers(Operation::negate, {operand});
}

NewNode TreeBuilder::cast(NodeIndex operand, bool toInteger) {
  if (toInteger) {
    return ofNumbers(Operation::toInteger, {operand});
  }
  // A test becomes a number, so that it is no condition any more.
  return typeOf(operand) == ValueType::number ? NewNode(operand) : std::nullopt;
}

NewNode TreeBuilder::withUnit(NodeIndex operand, double factor) {
  return ofNumbers(Operation::multiply, {operand, number(factor)});
}

NewNode TreeBuilder::binary(Operation operation, NodeIndex left, NodeIndex right) {
  const ValueType leftType = typeOf(left);
  const ValueType rightType = typeOf(right);
  const bool areNumeric = isNumeric(leftType) && isNumeric(rightType);
  switch (operation) {
    case Operation::join:
      return join(left, right);
    case Operation::power:
      if (!areNumeric) {
        return std::nullopt;
      }
      return add({.operation = operation, .operands = {left, right}});
    case Operation::both:
    case Operation::either:
      if (!isCondition(leftType) || !isCondition(rightType)) {
        return std::nullopt;
      }
      return add({.operation = operation, .type = ValueType::truth, .operands = {left, right}});
    case Operation::less:
    case Operation::lessOrEqual:
    case Operation::greater:
    case Operation::greaterOrEqual:
    case Operation::equal:
    case Operation::notEqual:
      if (areNumeric != (isNumeric(leftType) || isNumeric(rightType))) {
        return std::nullopt;
      }
      return add({.operation = operation, .type = ValueType::truth, .operands = {left, right}});
    default:
      return ofNumbers(operation, {left, right});
  }
}

// A chain from left to right is one node, as long as it is not too long to be copied.
NewNode TreeBuilder::join(NodeIndex left, NodeIndex right) {
  if (typeOf(left) != ValueType::text || typeOf(right) != ValueType::text) {
    return std::nullopt;
  }
  constexpr std::size_t kLongestChain = 16;
  std::vector<NodeIndex> operands{left};
  const TreeNode& first = m_tree.nodes[left];
  if (first.operation == Operation::join && first.operands.size() < kLongestChain) {
    operands = first.operands;
  }
  operands.push_back(right);
  return add(
      {.operation = Operation::join, .type = ValueType::text, .operands = std::move(operands)});
}

NewNode TreeBuilder::choice(NodeIndex condition, NodeIndex first, NodeIndex second) {
  const std::optional<ValueType> type = commonType(typeOf(first), typeOf(second));
  if (!isCondition(typeOf(condition)) || !type) {
    return std::nullopt;
  }
  return add(
      {.operation = Operation::choose, .type = *type, .operands = {condition, first, second}});
}

NewNode TreeBuilder::call(const FunctionLine& line, std::vector<NodeIndex> arguments) {
  const std::optional<ValueType> type = typeOfCall(line, typesOf(arguments));
  if (!type) {
    return std::nullopt;
  }
  return add({.operation = Operation::tableFunction,
              .type = *type,
              .operands = std::move(arguments),
              .line = &line});
}

NewNode TreeBuilder::call(Number1 libraryFunction, NodeIndex argument) {
  if (!countsAsNumber(typeOf(argument))) {
    return std::nullopt;
  }
  return add({.operation = Operation::libraryFunction,
              .operands = {argument},
              .libraryFunction = libraryFunction});
}

TypedTree TreeBuilder::take(NodeIndex root) {
  m_tree.root = root;
  m_known.clear();
  return std::move(m_tree);
}

}  // namespace kelvarin
