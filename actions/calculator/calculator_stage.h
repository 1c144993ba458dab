// The outputs of a calculator for whole batches: columns that are made, beside those of the input,
// which are passed on.
//
// Where rows are selected, a column has a value for every stored row, so that all columns share the
// selection. Those of the other rows mean nothing.
// Used by both calculators, for runs whose outputs have a BatchProgram.
// Threads: made on the engine's, then read by any number at once.
#pragma once

#include <memory>
#include <vector>

#include "actions/calculator/output_columns.h"
#include "actions/calculator/value_counts.h"
#include "expression/evaluator/batch_program.h"
#include "host/contract/batch_steps.h"

namespace kelvarin {

class BatchEvaluation;
class ResultColumn;

class CalculatorStage final : public BatchStage {
 public:
  // The outputs have one column each, or one for every element of the action's vectors, element by
  // element. Null where rows must be computed one by one. `expressions` outlive the stage.
  // `run` outlives it, too, or is null.
  static std::unique_ptr<const CalculatorStage> of(const ExpressionSet& expressions,
                                                   const OutputColumns& columns,
                                                   const RunRecord* run);

  // Stops before a row with a number that is no key, a null key that stops the run, texts that may
  // be too long, or a text that should be a number or a date and is none; and where the columns
  // that it makes have become large, or the user has stopped the run.
  StageResult process(const RowBatch& batch, long long firstRow) const override;
  bool processesWhole(const RowBatch& batch) const override;
  bool needsRowNumbers() const override { return m_program->needsRowNumbers(); }

  // Adds the values of the rows from `begin` to before `end`; `counts` has one entry an output.
  // Those of a whole result were counted when it was made.
  void countValues(const StageResult& result, std::size_t begin, std::size_t end,
                   std::vector<ValueCounts>& counts) const;

 private:
  struct Counts;

  CalculatorStage() = default;
  RowBatchPointer rowsAtOnce(const RowBatch& batch) const;
  bool shouldComputeAllRows(const RowBatch& batch) const;
  StageResult compute(const RowBatch& batch, long long firstRow) const;
  StageResult computeAllRows(const RowBatch& batch) const;
  void addCounts(const RowBatch& result, std::size_t begin, std::size_t end,
                 std::vector<ValueCounts>& counts) const;
  std::size_t computeRows(const RowBatch& batch, long long firstRow,
                          std::vector<ResultColumn>& results) const;
  std::size_t computeLoadedRows(BatchEvaluation& rows, std::vector<ResultColumn>& results) const;

  std::unique_ptr<const BatchProgram> m_program;
  KeyCast m_keyCast;
  std::vector<MetaTypeColumn> m_types;        // of the columns that are made
  std::vector<std::size_t> m_columnOfOutput;  // where each of them is in the output
  std::size_t m_bytesOfRow = 1;               // about as many, of these columns
  bool m_mayComputeAnyRow = false;
  bool m_countsValues = false;
};

}  // namespace kelvarin
