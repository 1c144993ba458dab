#include "expression/batches/column_program.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "expression/backends/string_limits.h"
#include "expression/batches/column_evaluation.h"

namespace kelvarin {

namespace {

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

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

bool isLeaf(const TreeNode& node) {
  return node.operation == Operation::constant || node.operation == Operation::variable;
}

std::vector<bool> reachableFrom(const TypedTree& tree, std::size_t root) {
  std::vector<bool> isReached(tree.nodes.size());
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

std::vector<bool> nodesWithoutVariables(const TypedTree& tree) {
  std::vector<bool> isFixed(tree.nodes.size());
  for (std::size_t i = 0; i < isFixed.size(); ++i) {
    const TreeNode& node = tree.nodes[i];
    isFixed[i] = node.operation != Operation::variable &&
                 std::ranges::all_of(node.operands, [&](std::size_t k) { return isFixed[k]; });
  }
  return isFixed;
}

}  // namespace

class ColumnProgram::Compiler {
 public:
  Compiler(const TypedTree& tree, std::size_t root, ColumnProgram& program)
      : m_tree(tree),
        m_root(root),
        m_program(program),
        m_locations(root + 1),
        m_lastUses(root + 1, kNever) {}

  void compile() {
    m_program.m_isText = m_tree.nodes[m_root].type == ValueType::text;
    m_program.m_longestText = longestTextOf(m_tree);
    m_program.m_bytesOfStep = bytesOfStep(m_tree);
    const std::vector<bool> isReached = reachableFrom(m_tree, m_root);
    for (std::size_t i = 0; i <= m_root; ++i) {
      if (isReached[i]) {
        noteUses(i);
      }
    }
    m_lastUses[m_root] = kNever;
    for (std::size_t i = 0; i <= m_root; ++i) {
      if (isReached[i]) {
        addNode(i);
      }
    }
    m_program.m_result = m_locations[m_root];
  }

 private:
  void noteUses(std::size_t index) {
    for (const std::size_t operand : m_tree.nodes[index].operands) {
      m_lastUses[operand] = index;
    }
  }

  void addNode(std::size_t index) {
    const TreeNode& node = m_tree.nodes[index];
    Location& location = m_locations[index];
    location.isText = node.type == ValueType::text;
    if (node.operation == Operation::constant) {
      location.index = location.isText ? addText(node) : addNumber(node.number);
      return;
    }
    if (node.operation == Operation::variable) {
      location.kind = Location::Kind::variable;
      location.index = node.variable;
      auto& used = location.isText ? m_program.m_textVariables : m_program.m_numberVariables;
      used.push_back(node.variable);
      return;
    }
    addStep(index);
  }

  void addStep(std::size_t index) {
    const TreeNode& node = m_tree.nodes[index];
    Location& location = m_locations[index];
    location.kind = Location::Kind::computed;
    location.index = takeRegister(location.isText);
    Step step{node.operation, node.libraryFunction, node.line, {}, location};
    for (const std::size_t operand : node.operands) {
      step.operands.push_back(m_locations[operand]);
    }
    m_program.m_steps.push_back(std::move(step));
    for (const std::size_t operand : node.operands) {
      const Location& done = m_locations[operand];
      if (m_lastUses[operand] == index && done.kind == Location::Kind::computed) {
        freeRegisters(done.isText).push_back(done.index);
        m_lastUses[operand] = kNever;  // it may be an operand twice
      }
    }
  }

  std::vector<std::size_t>& freeRegisters(bool isText) {
    return isText ? m_freeTexts : m_freeNumbers;
  }

  // Never that of an operand, which is read while results are stored.
  std::size_t takeRegister(bool isText) {
    std::vector<std::size_t>& free = freeRegisters(isText);
    if (free.empty()) {
      return (isText ? m_program.m_textRegisters : m_program.m_numberRegisters)++;
    }
    const std::size_t taken = free.back();
    free.pop_back();
    return taken;
  }

  std::size_t addNumber(double number) {
    auto values = std::make_unique_for_overwrite<double[]>(kMaxRows);
    std::fill_n(values.get(), kMaxRows, number);
    m_program.m_numberConstants.push_back(std::move(values));
    return m_program.m_numberConstants.size() - 1;
  }

  std::size_t addText(const TreeNode& node) {
    m_program.m_bytesOfConstants.push_back(std::make_unique<const std::string>(node.text));
    const std::string& bytes = *m_program.m_bytesOfConstants.back();
    auto values = std::make_unique<ColumnText[]>(kMaxRows);
    std::fill_n(values.get(), kMaxRows, node.isNullText ? ColumnText() : ColumnText(bytes));
    m_program.m_textConstants.push_back(std::move(values));
    return m_program.m_textConstants.size() - 1;
  }

  const TypedTree& m_tree;
  const std::size_t m_root;
  ColumnProgram& m_program;
  std::vector<Location> m_locations;
  std::vector<std::size_t> m_lastUses;  // the node that reads a node last
  std::vector<std::size_t> m_freeNumbers;
  std::vector<std::size_t> m_freeTexts;
};

namespace {

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
    if (!isFixed[i] || isLeaf(tree.nodes[i])) {
      continue;
    }
    ColumnProgram part;
    Compiler(tree, i, part).compile();
    const std::optional<TreeNode> constant = constantOf(part, tree.nodes[i].type, functions);
    if (!constant) {
      return nullptr;
    }
    tree.nodes[i] = *constant;
  }
  std::unique_ptr<ColumnProgram> program(new ColumnProgram);
  Compiler(tree, tree.root, *program).compile();
  return program;
}

}  // namespace kelvarin
