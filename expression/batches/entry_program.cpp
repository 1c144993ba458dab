#include "expression/batches/entry_program.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "expression/backends/string_values.h"

namespace kelvarin {

namespace {

// On which variables the value of a node depends: none, a single text variable, or others.
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kOthers = kNone - 1;

std::size_t both(std::size_t first, std::size_t second) {
  return first == kNone || first == second ? second : second == kNone ? first : kOthers;
}

std::vector<std::size_t> variablesOfNodes(const TypedTree& tree) {
  std::vector<std::size_t> variables(tree.nodes.size(), kNone);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const TreeNode& node = tree.nodes[i];
    if (node.operation == Operation::variable) {
      variables[i] = node.type == ValueType::text ? node.variable : kOthers;
    }
    for (const std::size_t operand : node.operands) {
      variables[i] = both(variables[i], variables[operand]);
    }
  }
  return variables;
}

bool isComputed(const TreeNode& node) {
  return !node.operands.empty();
}

// The largest parts with one text variable, in the order of the tree.
std::vector<std::size_t> partsOf(const TypedTree& tree, const std::vector<std::size_t>& variables) {
  std::vector<bool> isReached(tree.root + 1);
  std::vector<std::size_t> parts;
  isReached[tree.root] = true;
  for (std::size_t i = tree.root + 1; i-- > 0;) {
    if (!isReached[i]) {
      continue;
    }
    if (variables[i] < kOthers) {
      if (isComputed(tree.nodes[i])) {
        parts.push_back(i);
      }
      continue;
    }
    for (const std::size_t operand : tree.nodes[i].operands) {
      isReached[operand] = true;
    }
  }
  std::ranges::reverse(parts);
  return parts;
}

// What a node is computed of, as a tree of its own.
TypedTree subtreeOf(const TypedTree& tree, std::size_t root) {
  std::vector<bool> isReached(root + 1);
  isReached[root] = true;
  for (std::size_t i = root + 1; i-- > 0;) {
    for (const std::size_t operand : tree.nodes[i].operands) {
      isReached[operand] = isReached[operand] || isReached[i];
    }
  }
  TypedTree part{.nodes = {}, .root = 0, .madeTexts = tree.madeTexts};
  std::vector<std::size_t> indices(root + 1);
  for (std::size_t i = 0; i <= root; ++i) {
    if (isReached[i]) {
      indices[i] = part.nodes.size();
      TreeNode& node = part.nodes.emplace_back(tree.nodes[i]);
      std::ranges::transform(node.operands, node.operands.begin(),
                             [&](std::size_t operand) { return indices[operand]; });
    }
  }
  part.root = indices[root];
  return part;
}

// As it is with both sides exchanged.
Operation exchanged(Operation comparison) {
  switch (comparison) {
    case Operation::less:
      return Operation::greater;
    case Operation::lessOrEqual:
      return Operation::greaterOrEqual;
    case Operation::greater:
      return Operation::less;
    case Operation::greaterOrEqual:
      return Operation::lessOrEqual;
    default:
      return comparison;
  }
}

bool isComparison(Operation operation) {
  return operation >= Operation::less && operation <= Operation::notEqual;
}

// Nothing where the node is not that of a text variable and a constant.
std::optional<EntryProgram::Comparison> comparisonAt(const TypedTree& tree, std::size_t index) {
  const TreeNode& node = tree.nodes[index];
  if (!isComparison(node.operation) || tree.nodes[node.operands[0]].type != ValueType::text) {
    return std::nullopt;
  }
  const TreeNode* variable = &tree.nodes[node.operands[0]];
  const TreeNode* constant = &tree.nodes[node.operands[1]];
  const bool isExchanged = variable->operation == Operation::constant;
  if (isExchanged) {
    std::swap(variable, constant);
  }
  if (variable->operation != Operation::variable || constant->operation != Operation::constant) {
    return std::nullopt;
  }
  return EntryProgram::Comparison{
      .variable = variable->variable,
      .node = index,
      .operation = isExchanged ? exchanged(node.operation) : node.operation,
      .bytes = constant->isNullText ? std::string(kNullTextBytes) : constant->text};
}

}  // namespace

std::unique_ptr<const EntryProgram> EntryProgram::of(const TypedTree& tree, std::size_t firstColumn,
                                                     const FunctionContext& functions) {
  const std::vector<std::size_t> variables = variablesOfNodes(tree);
  const std::vector<std::size_t> parts = partsOf(tree, variables);
  if (parts.empty()) {
    return nullptr;
  }
  std::unique_ptr<EntryProgram> program(new EntryProgram(tree, firstColumn, functions));
  for (const std::size_t node : parts) {
    if (!program->addPart(variables[node], node)) {
      return nullptr;
    }
  }
  program->findComparisons();
  return program;
}

// Variables beyond the last bit are left to the rows.
bool EntryProgram::addPart(std::size_t variable, std::size_t node) {
  const auto known = std::ranges::lower_bound(m_variables, variable);
  if (known == m_variables.end() || *known != variable) {
    if (m_variables.size() == std::numeric_limits<Variables>::digits) {
      return true;
    }
    m_variables.insert(known, variable);
  }
  m_parts.push_back({variable, node, ColumnProgram::of(subtreeOf(m_tree, node), m_functions)});
  return m_parts.back().program != nullptr;
}

bool EntryProgram::isIn(Variables variables, std::size_t variable) const {
  const auto known = std::ranges::lower_bound(m_variables, variable);
  return known != m_variables.end() && *known == variable &&
         (variables >> (known - m_variables.begin()) & 1u) != 0;
}

bool EntryProgram::isOnlyCompared(std::size_t variable) const {
  return std::ranges::find(m_comparisons, variable, &Comparison::variable) != m_comparisons.end();
}

void EntryProgram::findComparisons() {
  Variables used = 0;  // in another way
  std::vector<Comparison> comparisons;
  for (std::size_t i = 0; i < m_tree.nodes.size(); ++i) {
    if (std::optional<Comparison> comparison = comparisonAt(m_tree, i)) {
      comparisons.push_back(std::move(*comparison));
      continue;
    }
    for (const std::size_t operand : m_tree.nodes[i].operands) {
      if (m_tree.nodes[operand].operation == Operation::variable) {
        const auto known = std::ranges::find(m_variables, m_tree.nodes[operand].variable);
        used |= known == m_variables.end() ? 0 : Variables{1} << (known - m_variables.begin());
      }
    }
  }
  std::erase_if(comparisons,
                [&](const Comparison& comparison) { return !isIn(~used, comparison.variable); });
  m_comparisons = std::move(comparisons);
}

const ColumnProgram* EntryProgram::rest(Variables ofParts, Variables ofComparisons) const {
  const std::lock_guard lock(m_mutex);
  const auto [rest, isNew] = m_rests.try_emplace({ofParts, ofComparisons});
  if (isNew) {
    rest->second = makeRest(ofParts, ofComparisons);
  }
  return rest->second.get();
}

std::unique_ptr<const ColumnProgram> EntryProgram::makeRest(Variables ofParts,
                                                            Variables ofComparisons) const {
  TypedTree rest = m_tree;
  const auto replace = [&rest](std::size_t index, std::size_t column) {
    TreeNode& node = rest.nodes[index];
    node = {.operation = Operation::variable, .type = node.type, .variable = column};
  };
  for (std::size_t i = 0; i < m_parts.size(); ++i) {
    if (isIn(ofParts, m_parts[i].variable)) {
      replace(m_parts[i].node, columnOf(i));
    }
  }
  for (std::size_t i = 0; i < m_comparisons.size(); ++i) {
    if (isIn(ofComparisons, m_comparisons[i].variable)) {
      replace(m_comparisons[i].node, columnOfComparison(i));
    }
  }
  return ColumnProgram::of(std::move(rest), m_functions);
}

}  // namespace kelvarin
