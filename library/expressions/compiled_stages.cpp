#include "library/expressions/compiled_stages.h"

#include <utility>

namespace kelvarin {

std::shared_ptr<const CompiledStages> CompiledStages::of(std::unique_ptr<PulledStream> stream,
                                                         int count) {
  auto stages = std::make_shared<CompiledStages>();
  for (int action = 1; action <= count; ++action) {
    const BatchStage* stage = stream->run().stageOf(action);
    if (stage == nullptr) {
      return nullptr;
    }
    stages->m_stages.push_back(stage);
  }
  stages->m_stream = std::move(stream);
  return stages;
}

CompiledStages::Rows CompiledStages::process(const RowBatchPointer& batch,
                                             long long firstRow) const {
  Rows rows;
  rows.rowsDone = processFrom(0, batch, firstRow, rows.batches);
  return rows;
}

// All stages but the last return as many rows as they take, in their order, so that a row has one
// number in all of them.
std::size_t CompiledStages::processFrom(std::size_t stage, const RowBatchPointer& batch,
                                        long long firstRow,
                                        std::vector<RowBatchPointer>& results) const {
  if (stage == m_stages.size()) {
    results.push_back(batch);
    return batch->rowCount();
  }
  std::size_t done = 0;
  while (done < batch->rowCount()) {
    const RowBatchPointer rest = done == 0 ? batch : batch->slice(done, batch->rowCount());
    const long long row = firstRow + static_cast<long long>(done);
    const StageResult result = m_stages[stage]->process(*rest, row);
    const RowBatchPointer& output = result.outputs[0];
    const bool isLast = stage + 1 == m_stages.size();
    if (isLast && output != nullptr && output->rowCount() > 0) {
      results.push_back(output);
    }
    const std::size_t through = isLast || output == nullptr
                                    ? result.rowsDone
                                    : processFrom(stage + 1, output, row, results);
    done += through;
    if (through == 0 || through < result.rowsDone) {
      break;
    }
  }
  return done;
}

}  // namespace kelvarin
