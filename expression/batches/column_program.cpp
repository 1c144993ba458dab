#include "expression/batches/column_program.h"

#include <algorithm>
#include <utility>

#include "expression/batches/column_compiler.h"
#include "expression/batches/column_evaluation.h"

namespace kelvarin {

namespace {

std::vector<bool> nodesWithoutVariables(const TypedTree& tree) {
  std::vector<bool> isFixed(tree.nodes.size());
  for (std::size_t i = 0; i < isFixed.size(); ++i) {
    const TreeNode& node = tree.nodes[i];
    isFixed[i] = node.operation != Operation::variable &&
                 std::ranges::all_of(node.operands, [&](std::size_t k) { return isFixed[k]; });
  }
  return isFixed;
}

// What a node without variables comes to, as a constant.
std::optional<TreeNode> constantOf(const ColumnProgram& program, ValueType type,
                                   const FunctionContext& functions) {
  ColumnEvaluation evaluation(functions);
  if (evaluation.evaluate(program, {}, 1) == 0) {
    return std::nullopt;
  }
  TreeNode constant{.type = type};
  if (type == ValueType::text) {
    const ColumnText& text = evaluation.texts()[0];
    constant.text = text.view();
    constant.isNullText = text.isNull();
  } else {
    constant.number = evaluation.numbers()[0];
  }
  return constant;
}

}  // namespace

std::unique_ptr<const ColumnProgram> ColumnProgram::of(TypedTree tree,
                                                       const FunctionContext& functions) {
  const std::vector<bool> isFixed = nodesWithoutVariables(tree);
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
    if (!isFixed[i] || tree.nodes[i].isLeaf()) {
      continue;
    }
    ColumnProgram part;
    Compiler(tree, part).compile(i);
    const std::optional<TreeNode> constant = constantOf(part, tree.nodes[i].type, functions);
    if (!constant) {
      return nullptr;
    }
    tree.nodes[i] = *constant;
  }
  std::unique_ptr<ColumnProgram> program(new ColumnProgram);
  Compiler(tree, *program).compile(tree.root);
  return program;
}

}  // namespace kelvarin
