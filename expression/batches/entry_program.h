// An expression cut where parts of it depend on one text variable and nothing else, so that these
// parts are computed for the entries of a dictionary instead of for rows.
//
// What is left takes the values of the parts from columns of their own, as if they were variables.
// Used by BatchEvaluation where the texts of a batch have a dictionary.
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "expression/batches/column_program.h"

namespace kelvarin {

class EntryProgram {
 public:
  // Not part of a larger one.
  struct Part {
    std::size_t variable = 0;  // the text variable on which it depends
    std::size_t node = 0;
    std::unique_ptr<const ColumnProgram> program;
  };
  // Of a text variable with a constant, which decides it by the order of both.
  struct Comparison {
    std::size_t variable = 0;
    std::size_t node = 0;
    Operation operation = Operation::equal;  // as if the variable stood first
    std::string bytes;                       // of the constant
  };
  // Of the variables of the parts, by their order: a bit each.
  using Variables = std::uint32_t;

  // Null where no part depends on one text variable alone. In the store the indices from
  // `firstColumn` on are free for the columns of the parts.
  static std::unique_ptr<const EntryProgram> of(const TypedTree& tree, std::size_t firstColumn,
                                                const FunctionContext& functions);

  std::span<const Part> parts() const { return m_parts; }
  std::size_t columnOf(std::size_t part) const { return m_firstColumn + part; }
  std::size_t endOfColumns() const { return columnOfComparison(m_comparisons.size()); }
  // In ascending order.
  std::span<const std::size_t> variables() const { return m_variables; }

  // All comparisons of variables with which nothing else is done.
  std::span<const Comparison> comparisons() const { return m_comparisons; }
  std::size_t columnOfComparison(std::size_t comparison) const {
    return m_firstColumn + m_parts.size() + comparison;
  }
  bool isOnlyCompared(std::size_t variable) const;

  // The expression in which the parts of some variables, and the comparisons of some others, are
  // columns; those of the rest are computed for rows. Null where there is none.
  const ColumnProgram* rest(Variables ofParts, Variables ofComparisons) const;

 private:
  EntryProgram(const TypedTree& tree, std::size_t firstColumn, const FunctionContext& functions)
      : m_tree(tree), m_firstColumn(firstColumn), m_functions(functions) {}
  [[nodiscard]] bool addPart(std::size_t variable, std::size_t node);
  void findComparisons();
  std::unique_ptr<const ColumnProgram> makeRest(Variables ofParts, Variables ofComparisons) const;
  bool isIn(Variables variables, std::size_t variable) const;

  const TypedTree m_tree;
  const std::size_t m_firstColumn;
  const FunctionContext m_functions;
  std::vector<Part> m_parts;
  std::vector<std::size_t> m_variables;
  std::vector<Comparison> m_comparisons;
  mutable std::mutex m_mutex;
  mutable std::map<std::pair<Variables, Variables>, std::unique_ptr<const ColumnProgram>>
      m_rests;  // under m_mutex
};

}  // namespace kelvarin
