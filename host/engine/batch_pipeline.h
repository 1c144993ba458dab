// The batches of a chain of actions, computed on all processors and taken in their order.
//
// A chain is read, transformed and encoded as one task a batch; of the steps, each may be missing.
// Units of a source are read by the tasks themselves, one after another; other batches are pushed.
// A window bounds how many are alive, by number and by bytes.
// Used by: running_action.cpp, row_links.cpp.
// Threads: all operations on the engine thread; tasks on any, of which the engine's is one while it
// waits.
// Errors: an exception of a task comes with its result.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "base/task_pool.h"
#include "host/contract/batch_steps.h"
#include "host/engine/batch_trail.h"

namespace kelvarin {

class BatchPipeline {
 public:
  struct Chain {
    BatchSource* source = nullptr;  // null: batches are pushed
    std::vector<const BatchStage*> stages;
    const BatchEncoder* encoder = nullptr;  // of the output of the last stage; null: nobody's

    // Whose work it is: of the source, each stage and the encoder.
    const ActionItem* sourceAction = nullptr;
    std::vector<const ActionItem*> stageActions;
    const ActionItem* sinkAction = nullptr;
  };

  // What has become of a batch.
  struct Result {
    std::unique_ptr<BatchUnit> unit;  // of a source
    RowBatchPointer batch;            // the input of the first stage
    BatchTrailPointer trail;          // as it was pushed
    std::vector<StageResult> stages;
    std::unique_ptr<EncodedBatch> encoded;
    // Every stage has done all of its rows; else the batch has to go through the actions
    // themselves.
    bool isWhole = true;
    // Thrown by the source (-1), the stage of that number or, after all stages, the encoder.
    std::exception_ptr exception;
    int step = -1;
  };

  // `outputPin` is the output pin of each stage from which the chain goes on.
  BatchPipeline(TaskPool& pool, Chain chain, std::vector<int> outputPins);
  // Waits for the tasks that have begun.
  ~BatchPipeline();
  BatchPipeline(const BatchPipeline&) = delete;
  BatchPipeline& operator=(const BatchPipeline&) = delete;

  const Chain& chain() const { return m_chain; }
  bool hasSpace() const;
  bool isEmpty() const;
  // `firstRow` is the number of its first row at the first stage's pin.
  void push(RowBatchPointer batch, BatchTrailPointer trail, long long firstRow);
  // Waits for the oldest batch. Null: there is none, and the source has none for now either, or
  // `mayWait` has answered false.
  std::unique_ptr<Result> next(const std::function<bool()>& mayWait);
  // The source may have more units.
  void readOn();
  // While held, no more units are begun.
  void setHeld(bool isHeld);

 private:
  class Task;

  bool canArm() const;
  std::shared_ptr<Task> arm();
  std::size_t maxUnits() const;
  void addToWindow(std::shared_ptr<Task> task);
  void waitFor(const Task& task, std::size_t armedCount, std::unique_lock<std::mutex>& lock);

  TaskPool& m_pool;
  const Chain m_chain;
  const std::vector<int> m_outputPins;
  ShortWait m_wait;  // of the engine thread

  mutable std::mutex m_mutex;  // guards all members below
  std::condition_variable m_changed;
  std::deque<std::shared_ptr<Task>> m_window;  // the oldest in front
  std::size_t m_bytesAlive = 0;                // of what is worked on, as it was before
  std::size_t m_resultBytesAlive = 0;          // of what has come out, and is expected to
  std::size_t m_bytesOfLastResult = 0;
  std::atomic<std::size_t> m_armedCount{0};  // tasks that read units, all that there were
  bool m_hasResult = false;
  bool m_isReading = false;  // a task that has not read its unit is in the window
  bool m_isDry = false;      // the source has no more units for now
  bool m_isHeld = false;
};

}  // namespace kelvarin
