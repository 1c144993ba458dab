// The expressions of one action as they are evaluated for whole batches.
//
// Only for expressions of native code whose variables are numbers, keys and the number of the row:
// their results depend on the row alone, they cannot fail, and loading a row counts nothing.
// RowEvaluation evaluates all others.
// Used by the stages of the expression actions, through BatchEvaluation.
// Threads: made on the engine's, then read by any number at once.
#pragma once

#include <memory>
#include <vector>

#include "expression/evaluator/expression_set.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

class BatchProgram {
 public:
  // To be called when the last output has been compiled; `expressions` outlive the program. Null
  // where rows must be evaluated one by one.
  static std::unique_ptr<const BatchProgram> of(const ExpressionSet& expressions);

  int outputCount() const { return static_cast<int>(m_calls.size()); }
  bool needsRowNumbers() const { return m_needsRowNumbers; }
  // The rows before the first one with a null key that stops the run.
  std::size_t rowsBeforeFailure(const RowBatch& batch) const;
  // Rows that do not count may be evaluated, too, which takes less time than to leave some out.
  bool mayEvaluateAnyRow() const;
  // So many that their values stay in the processor's nearer caches.
  std::size_t rowsAtOnce() const { return m_rowsAtOnce; }

 private:
  friend class BatchEvaluation;

  BatchProgram() = default;
  bool addOutput(const CompiledOutput& output, const std::vector<NumberSource>& sources);
  bool addVariable(std::size_t variable, const std::vector<NumberSource>& sources);

  std::vector<ColumnsCall> m_calls;       // one an output
  std::vector<NumberSource> m_variables;  // those that the outputs use
  std::vector<int> m_columnsOfKeys;       // of which a null stops the run
  std::size_t m_storeSize = 0;            // the largest index of a variable is below
  std::size_t m_rowsAtOnce = 0;
  bool m_needsRowNumbers = false;
};

}  // namespace kelvarin
