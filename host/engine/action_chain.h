// Actions that follow one another and work on whole batches, as one chain of tasks.
//
// A chain begins with a source, or below a queue, and ends with an action; where that has one
// reader, which is a sink, the batches come out encoded for it. The engine thread takes what comes
// out in the order of the rows and does what belongs to it: sources judge what was read, row
// numbers and counts move on, and the result is published. A batch that the chain could not do as a
// whole goes through the actions one after the other instead, as if there were no chain; and where
// one of these then asks for more, it gets what the chain has begun, as it was before.
// Used by: running_action.cpp.
// Threads: the engine thread.
#pragma once

#include <memory>
#include <vector>

#include "host/engine/batch_pipeline.h"
#include "host/engine/row_links.h"

namespace kelvarin {

class ActionChain {
 public:
  // Null: there is none, or not yet.
  static std::unique_ptr<ActionChain> endingWith(RunningAction& last, TaskPool& pool);
  ~ActionChain();
  ActionChain(const ActionChain&) = delete;
  ActionChain& operator=(const ActionChain&) = delete;

  // Its actions still compute what they did when it was made, and none has ended.
  bool isIntact() const;
  // Nothing waits between its actions.
  bool isDrained() const;
  // Takes the next batch through. False: the actions have to go on by themselves, as at the end of
  // the input.
  bool advance();
  // Begins no more batches.
  void retire() { m_isRetired = true; }
  // Batches are under way.
  bool isAtWork() const { return !m_pipeline->isEmpty(); }
  // The next one, as it has come to the first action, judged by its source; null: none of its rows
  // count. The chain is at work.
  PublishedBatch takeBack();

 private:
  explicit ActionChain(RunningAction& last) : m_last(last) {}

  void claimActions();
  bool mayStart() const;
  void failWith(const BatchPipeline::Result& result) const;

  bool findActions();
  bool findEncoder();
  bool advanceSource();
  bool advanceInput();
  void deliver(BatchPipeline::Result& result);
  void deliverWhole(BatchPipeline::Result& result, BatchTrailPointer trail);
  bool mayWait() const { return m_last.canGoOn() || m_last.mustTakePending(); }

  RunningAction& m_last;
  RunningAction* m_source = nullptr;  // null: batches come through m_input
  RowLink* m_input = nullptr;
  std::vector<RunningAction*> m_actions;  // that transform
  std::vector<int> m_outputPins;          // of each, the one from which the chain goes on
  BatchPipeline::Chain m_chain;
  std::unique_ptr<BatchPipeline> m_pipeline;
  long long m_nextRow = 0;  // the number of the first row that was not pushed yet
  bool m_isRetired = false;
};

}  // namespace kelvarin
