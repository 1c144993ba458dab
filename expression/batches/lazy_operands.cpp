#include "expression/batches/lazy_operands.h"

#include <algorithm>
#include <optional>
#include <string>

namespace kelvarin {

namespace {

// Of numbers, in a nanosecond or two.
bool isQuickOperator(Operation operation) {
  switch (operation) {
    case Operation::negate:
    case Operation::toInteger:
    case Operation::add:
    case Operation::subtract:
    case Operation::multiply:
    case Operation::divide:
    case Operation::less:
    case Operation::lessOrEqual:
    case Operation::greater:
    case Operation::greaterOrEqual:
    case Operation::equal:
    case Operation::notEqual:
      return true;
    default:
      return false;
  }
}

// An argument may be a program of its own that has a fault, unless it is known to have none.
bool mayBeCalledInVain(const TreeNode& node, const TypedTree& tree) {
  std::vector<std::optional<std::string>> constants(node.operands.size());
  for (std::size_t i = 1; i < constants.size(); ++i) {
    const TreeNode& argument = tree.nodes[node.operands[i]];
    if (argument.operation != Operation::constant) {
      return true;
    }
    if (argument.type == ValueType::text && !argument.isNullText) {
      constants[i] = argument.text;
    }
  }
  return node.line->checkOfConstants(constants).has_value();
}

// A text that is made may be too long.
bool mayFailAlone(const TreeNode& node, const TypedTree& tree) {
  if (node.operation != Operation::tableFunction) {
    return node.operation == Operation::join;
  }
  return node.type == ValueType::text ||
         (node.line->checkOfConstants != nullptr && mayBeCalledInVain(node, tree));
}

}  // namespace

LazyOperands::LazyOperands(const TypedTree& tree) : m_tree(tree), m_mayFail(tree.nodes.size()) {
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
    const TreeNode& node = tree.nodes[i];
    const auto mayFail = [this](std::size_t operand) { return m_mayFail[operand]; };
    m_mayFail[i] = mayFailAlone(node, tree) || std::ranges::any_of(node.operands, mayFail);
  }
}

// Selecting rows, gathering what is read and putting the results back costs more than one operator.
bool LazyOperands::isCheap(std::size_t index) const {
  const TreeNode& node = m_tree.nodes[index];
  return node.isLeaf() ||
         (isQuickOperator(node.operation) &&
          std::ranges::all_of(node.operands, [this](std::size_t operand) {
            return m_tree.nodes[operand].isLeaf() && isNumeric(m_tree.nodes[operand].type);
          }));
}

// The String Parser evaluates both sides of a logical operator, so a row fails with either.
bool LazyOperands::isLazy(std::size_t index, std::size_t position) const {
  const TreeNode& node = m_tree.nodes[index];
  const std::size_t operand = node.operands[position];
  if (position == 0 || isCheap(operand)) {
    return false;
  }
  switch (node.operation) {
    case Operation::choose:
      return true;
    case Operation::both:
    case Operation::either:
      return !m_mayFail[operand];
    default:
      return false;
  }
}

}  // namespace kelvarin
