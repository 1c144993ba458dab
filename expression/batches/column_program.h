// A typed tree as steps over columns of some hundred rows.
//
// Each step computes one node of the tree for all rows and leaves its values in a register, which
// later steps reuse. Parts without variables are computed once, when the program is made. What only
// some rows ask for, as a branch of a choice, has steps of its own for these rows.
// Used by BatchProgram, through ColumnEvaluation.
// Threads: read-only once it is made; any number of evaluations share it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "expression/batches/typed_tree.h"
#include "expression/functions/column_text.h"
#include "expression/functions/function_context.h"

namespace kelvarin {

class ColumnProgram {
 public:
  // Rows of one evaluation: few enough that their values stay in the processor's nearer caches.
  static constexpr std::size_t kMaxRows = 256;

  // `functions` is what the bodies depend on, with dates prepared. Null where a part without
  // variables makes a text that the String Parser might refuse.
  static std::unique_ptr<const ColumnProgram> of(TypedTree tree, const FunctionContext& functions);

  bool yieldsText() const { return m_isText; }
  // Indices in the variable store of what the program reads.
  std::span<const std::size_t> numberVariables() const { return m_numberVariables; }
  std::span<const std::size_t> textVariables() const { return m_textVariables; }

 private:
  friend class ColumnEvaluation;

  // Where the column of a node is.
  struct Location {
    enum class Kind { constant, variable, computed };

    Kind kind = Kind::constant;
    bool isText = false;
    std::size_t index = 0;  // of the constant, in the variable store, or of the register
  };
  struct Branch;
  struct Step {
    Operation operation = Operation::constant;
    Number1 libraryFunction = nullptr;
    const FunctionLine* line = nullptr;
    // Of a step with branches the condition, and what rows get that are in none.
    std::vector<Location> operands;
    Location result;
    std::vector<Branch> branches;
  };
  // Steps for the rows in which a condition is true, or for those in which it is not. What they
  // read of the other rows' columns is gathered first.
  struct Branch {
    struct Input {
      Location from;
      Location to;
    };

    bool isOfTrue = true;
    std::size_t depth = 0;  // how many branches it is in
    std::vector<Input> inputs;
    std::vector<Step> steps;
    Location result;
  };
  class Compiler;

  ColumnProgram() = default;

  std::vector<Step> m_steps;
  Location m_result;
  bool m_isText = false;
  std::vector<std::size_t> m_numberVariables;
  std::vector<std::size_t> m_textVariables;
  // Each constant kMaxRows times, so that a step treats them like other columns.
  std::vector<std::unique_ptr<double[]>> m_numberConstants;
  std::vector<std::unique_ptr<ColumnText[]>> m_textConstants;
  std::vector<std::unique_ptr<const std::string>> m_bytesOfConstants;
  std::size_t m_numberRegisters = 0;
  std::size_t m_textRegisters = 0;
  std::size_t m_branchDepth = 0;  // of the innermost branch
  std::size_t m_longestText = 0;  // a row that makes a longer one is not evaluated by the program
  std::size_t m_bytesOfStep = 0;  // that the texts of one step may take
};

}  // namespace kelvarin
