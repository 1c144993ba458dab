#include "expression/batches/column_compiler.h"

#include <algorithm>
#include <utility>

#include "expression/backends/string_limits.h"

namespace kelvarin {

namespace {

std::size_t shareOfText(std::size_t bytes, const TypedTree& tree) {
  return bytes / std::max<std::size_t>(tree.madeTexts, 1);
}

// With texts up to this size the String Parser's limits are out of reach for one row.
std::size_t longestTextOf(const TypedTree& tree) {
  return std::min(shareOfText(EvaluationLimits::kAllTextBytes, tree), EvaluationLimits::kTextBytes);
}

// So that rows of long texts take no more memory than some; fewer of them are evaluated at once.
std::size_t bytesOfStep(const TypedTree& tree) {
  constexpr std::size_t kBytesOfAll = std::size_t{16} << 20;
  return shareOfText(kBytesOfAll, tree);
}

std::vector<bool> reachableFrom(const TypedTree& tree, std::size_t root) {
  std::vector<bool> isReached(root + 1);
  isReached[root] = true;
  for (std::size_t i = root + 1; i-- > 0;) {
    if (isReached[i]) {
      for (const std::size_t operand : tree.nodes[i].operands) {
        isReached[operand] = true;
      }
    }
  }
  return isReached;
}

}  // namespace

ColumnProgram::Compiler::Compiler(const TypedTree& tree, ColumnProgram& program)
    : m_tree(tree), m_lazyOperands(tree), m_program(program), m_locations(tree.nodes.size()) {}

void ColumnProgram::Compiler::compile(std::size_t root) {
  m_program.m_isText = m_tree.nodes[root].type == ValueType::text;
  m_program.m_longestText = longestTextOf(m_tree);
  m_program.m_bytesOfStep = bytesOfStep(m_tree);
  addLeaves(root);
  addSteps(needsOf(root), 0, m_program.m_steps);
  m_program.m_result = *m_locations[root];
}

void ColumnProgram::Compiler::addLeaves(std::size_t root) {
  const std::vector<bool> isReached = reachableFrom(m_tree, root);
  for (std::size_t i = 0; i <= root; ++i) {
    const TreeNode& node = m_tree.nodes[i];
    const bool isText = node.type == ValueType::text;
    if (!isReached[i]) {
      continue;
    }
    if (node.operation == Operation::constant) {
      m_locations[i] = isText ? addText(node) : addNumber(node.number);
    } else if (node.operation == Operation::variable) {
      m_locations[i] = {Location::Kind::variable, isText, node.variable};
      auto& used = isText ? m_program.m_textVariables : m_program.m_numberVariables;
      used.push_back(node.variable);
    }
  }
}

ColumnProgram::Compiler::Needs ColumnProgram::Compiler::needsOf(std::size_t root) const {
  Needs needs;
  std::vector<bool> isReached(root + 1);
  std::vector<bool> isComputed(root + 1);
  isReached[root] = isComputed[root] = true;
  for (std::size_t i = root + 1; i-- > 0;) {
    if (!isReached[i]) {
      continue;
    }
    if (m_locations[i]) {
      needs.inputs.push_back(i);
      continue;
    }
    if (isComputed[i]) {
      needs.computed.push_back(i);
    }
    const std::vector<std::size_t>& operands = m_tree.nodes[i].operands;
    for (std::size_t k = 0; k < operands.size(); ++k) {
      isReached[operands[k]] = true;
      if (isComputed[i] && !m_lazyOperands.isLazy(i, k)) {
        isComputed[operands[k]] = true;
      }
    }
  }
  std::ranges::reverse(needs.inputs);
  std::ranges::reverse(needs.computed);
  findLastReads(root, needs);
  return needs;
}

// A branch of a node reads all that it is made of.
void ColumnProgram::Compiler::findLastReads(std::size_t root, Needs& needs) const {
  std::vector<bool> isOpen(root + 1);
  for (const auto* nodes : {&needs.inputs, &needs.computed}) {
    for (const std::size_t index : *nodes) {
      isOpen[index] = true;
    }
  }
  isOpen[root] = false;  // it is the result
  needs.lastRead.resize(needs.computed.size());
  for (std::size_t i = needs.computed.size(); i-- > 0;) {
    const std::size_t reader = needs.computed[i];
    const auto read = [&](std::size_t index) {
      if (isOpen[index]) {
        isOpen[index] = false;
        needs.lastRead[i].push_back(index);
      }
    };
    const std::vector<std::size_t>& operands = m_tree.nodes[reader].operands;
    for (std::size_t k = 0; k < operands.size(); ++k) {
      if (!m_lazyOperands.isLazy(reader, k)) {
        read(operands[k]);
        continue;
      }
      const std::vector<bool> isReached = reachableFrom(m_tree, operands[k]);
      for (std::size_t index = 0; index < isReached.size(); ++index) {
        if (isReached[index]) {
          read(index);
        }
      }
    }
  }
}

void ColumnProgram::Compiler::addSteps(const Needs& needs, std::size_t depth,
                                       std::vector<Step>& steps) {
  for (std::size_t i = 0; i < needs.computed.size(); ++i) {
    Step step = stepOf(needs.computed[i], depth);
    m_locations[needs.computed[i]] = step.result;
    steps.push_back(std::move(step));
    for (const std::size_t done : needs.lastRead[i]) {
      release(*m_locations[done]);
    }
  }
}

// The register of the result is never that of an operand, which is read while results are stored.
ColumnProgram::Step ColumnProgram::Compiler::stepOf(std::size_t index, std::size_t depth) {
  const TreeNode& node = m_tree.nodes[index];
  Step step{node.operation, node.libraryFunction, node.line, {}, {}, {}};
  step.result = takeRegister(node.type == ValueType::text);
  for (std::size_t k = 0; k < node.operands.size(); ++k) {
    if (m_lazyOperands.isLazy(index, k)) {
      const bool isOfTrue =
          node.operation == Operation::choose ? k == 1 : node.operation == Operation::both;
      step.branches.push_back(branchOf(node.operands[k], isOfTrue, depth + 1));
    } else {
      step.operands.push_back(*m_locations[node.operands[k]]);
    }
  }
  if (!step.branches.empty() && node.operation != Operation::choose) {
    step.operands.push_back(addNumber(node.operation == Operation::either ? 1.0 : 0.0));
  }
  return step;
}

ColumnProgram::Branch ColumnProgram::Compiler::branchOf(std::size_t root, bool isOfTrue,
                                                        std::size_t depth) {
  m_program.m_branchDepth = std::max(m_program.m_branchDepth, depth);
  const Needs needs = needsOf(root);
  Branch branch;
  branch.isOfTrue = isOfTrue;
  branch.depth = depth;
  std::vector<Location> outside;
  for (const std::size_t input : needs.inputs) {
    Location& location = *m_locations[input];
    outside.push_back(location);
    if (location.kind != Location::Kind::constant) {
      const Location gathered = takeRegister(location.isText);
      branch.inputs.push_back({location, gathered});
      location = gathered;
    }
  }
  addSteps(needs, depth, branch.steps);
  branch.result = *m_locations[root];
  release(branch.result);
  for (const std::size_t index : needs.computed) {
    m_locations[index].reset();
  }
  for (std::size_t i = 0; i < outside.size(); ++i) {
    m_locations[needs.inputs[i]] = outside[i];
  }
  return branch;
}

ColumnProgram::Location ColumnProgram::Compiler::addNumber(double number) {
  auto values = std::make_unique_for_overwrite<double[]>(kMaxRows);
  std::fill_n(values.get(), kMaxRows, number);
  m_program.m_numberConstants.push_back(std::move(values));
  return {Location::Kind::constant, false, m_program.m_numberConstants.size() - 1};
}

ColumnProgram::Location ColumnProgram::Compiler::addText(const TreeNode& node) {
  m_program.m_bytesOfConstants.push_back(std::make_unique<const std::string>(node.text));
  const std::string& bytes = *m_program.m_bytesOfConstants.back();
  auto values = std::make_unique<ColumnText[]>(kMaxRows);
  std::fill_n(values.get(), kMaxRows, node.isNullText ? ColumnText() : ColumnText(bytes));
  m_program.m_textConstants.push_back(std::move(values));
  return {Location::Kind::constant, true, m_program.m_textConstants.size() - 1};
}

ColumnProgram::Location ColumnProgram::Compiler::takeRegister(bool isText) {
  std::vector<std::size_t>& free = freeRegisters(isText);
  if (free.empty()) {
    std::size_t& count = isText ? m_program.m_textRegisters : m_program.m_numberRegisters;
    return {Location::Kind::computed, isText, count++};
  }
  const std::size_t taken = free.back();
  free.pop_back();
  return {Location::Kind::computed, isText, taken};
}

void ColumnProgram::Compiler::release(const Location& location) {
  if (location.kind == Location::Kind::computed) {
    freeRegisters(location.isText).push_back(location.index);
  }
}

}  // namespace kelvarin
