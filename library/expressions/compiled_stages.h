// The stages of actions that follow one another, kept open after their first row, so that batches
// go through them without a run of their own.
//
// Made by compiled_expressions.h; used by applied_stream.h.
// Threads: any, once made.
#pragma once

#include <memory>
#include <vector>

#include "library/runs/pulled_stream.h"

namespace kelvarin {

class CompiledStages {
 public:
  // `stream` has taken a row through `count` actions behind its source. Null: one of them has no
  // stage.
  static std::shared_ptr<const CompiledStages> of(std::unique_ptr<PulledStream> stream, int count);

  // The results of the first rows of a batch, which are `rowsDone`. With fewer than there are, the
  // next row has to go through the actions themselves.
  struct Rows {
    std::vector<RowBatchPointer> batches;
    std::size_t rowsDone = 0;
  };
  Rows process(const RowBatchPointer& batch, long long firstRow) const;

 private:
  // The results of the first rows, through the stages from `stage` on.
  std::size_t processFrom(std::size_t stage, const RowBatchPointer& batch, long long firstRow,
                          std::vector<RowBatchPointer>& results) const;

  std::unique_ptr<PulledStream> m_stream;  // has the actions
  std::vector<const BatchStage*> m_stages;
};

}  // namespace kelvarin
