// Turns a typed tree into the steps of a ColumnProgram and assigns registers to all values.
//
// Part of ColumnProgram.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "expression/batches/column_program.h"
#include "expression/batches/lazy_operands.h"

namespace kelvarin {

class ColumnProgram::Compiler {
 public:
  Compiler(const TypedTree& tree, ColumnProgram& program);

  void compile(std::size_t root);

 private:
  // What the rows of a branch, or all rows, need for one node. Nodes are in ascending order.
  struct Needs {
    std::vector<std::size_t> inputs;  // nodes that are known where the branch begins
    std::vector<std::size_t> computed;
    std::vector<std::vector<std::size_t>> lastRead;  // by each of these
  };

  Needs needsOf(std::size_t root) const;
  void findLastReads(std::size_t root, Needs& needs) const;
  void addLeaves(std::size_t root);
  void addSteps(const Needs& needs, std::size_t depth, std::vector<Step>& steps);
  Step stepOf(std::size_t index, std::size_t depth);
  Branch branchOf(std::size_t root, bool isOfTrue, std::size_t depth);

  Location addNumber(double number);
  Location addText(const TreeNode& node);
  Location takeRegister(bool isText);
  void release(const Location& location);
  std::vector<std::size_t>& freeRegisters(bool isText) {
    return isText ? m_freeTexts : m_freeNumbers;
  }

  const TypedTree& m_tree;
  const LazyOperands m_lazyOperands;
  ColumnProgram& m_program;
  // Of each node, in the branch that is being compiled; nothing where it is not computed there.
  std::vector<std::optional<Location>> m_locations;
  std::vector<std::size_t> m_freeNumbers;
  std::vector<std::size_t> m_freeTexts;
};

}  // namespace kelvarin
