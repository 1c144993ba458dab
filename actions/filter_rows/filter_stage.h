// The condition of a filter for whole batches: which of their rows go to which pin. The columns
// stay as they are.
//
// Used by FilterRows, for runs whose condition has a BatchProgram.
// Threads: made on the engine's, then read by any number at once.
#pragma once

#include <array>
#include <memory>

#include "expression/evaluator/batch_program.h"
#include "host/contract/batch_steps.h"

namespace kelvarin {

class BatchEvaluation;

class FilterStage final : public BatchStage {
 public:
  // Whether somebody takes the rows of each pin. The others get no rows; they are counted only.
  using ReadPins = std::array<bool, 2>;

  // Null where rows must be decided on one by one. `expressions` outlive the stage, and so does
  // `run`, which may be null.
  static std::unique_ptr<const FilterStage> of(const ExpressionSet& expressions, ReadPins isRead,
                                               bool truncates, const RunRecord* run);

  // Stops before a row with a null key that stops the run, texts that may be too long, or a text
  // that should be a number or a date and is none, and of a truncating filter before the first row
  // that is false.
  StageResult process(const RowBatch& batch, long long firstRow) const override;
  bool needsRowNumbers() const override { return m_program->needsRowNumbers(); }
  bool takesLateTexts() const override { return true; }

  // Of the rows from `begin` to before `end`, those of each pin that nobody reads; 0 of the others.
  std::array<std::size_t, 2> unreadRows(const StageResult& result, std::size_t begin,
                                        std::size_t end) const;

 private:
  FilterStage() = default;
  StageResult keepFirstRows(const RowBatch& batch, BatchEvaluation& rows, std::size_t end) const;
  StageResult splitRows(const RowBatch& batch, BatchEvaluation& rows, std::size_t end) const;
  std::size_t rowsOfKnownPin(const StageResult& result, std::size_t begin, std::size_t end) const;
  // A pin whose rows a result has; all others are the other pin's. Where nobody reads any, there is
  // a number of no row behind the last of them.
  std::size_t knownPin() const { return !m_isRead[0] && m_isRead[1] ? 1 : 0; }

  std::unique_ptr<const BatchProgram> m_program;
  ReadPins m_isRead{};
  bool m_truncates = false;
};

}  // namespace kelvarin
