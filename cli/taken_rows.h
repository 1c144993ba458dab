// The sink of a graph whose rows a command takes itself, to show them or to compute over them.
//
// It is in no catalogue but that of the command's run.
// Threads: those of ActionItem and BatchSink.
// Errors: those of the taker pass to the engine.
#pragma once

#include "host/contract/action_item.h"
#include "host/contract/batch_steps.h"

namespace kelvarin {

// Who takes the rows of a run. Engine thread.
class RowTaker {
 public:
  virtual ~RowTaker() = default;
  // Once, before the first batch or the end. `tasks` may be null: nothing runs beside the caller.
  virtual void begin(const OneRow& columns, TaskPool* tasks) = 0;
  // False: no more are wanted.
  virtual bool take(const RowBatchPointer& batch) = 0;
  // There are no more; not called where the run has failed.
  virtual void end() {}
};

class TakenRows final : public ActionItem, public BatchSink {
 public:
  TakenRows(XMLNode node, GlobalParameters* parameters, RowTaker& taker);

  const char* typeName() const override { return "TakenRows"; }
  // A prototype's copies have its taker.
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new TakenRows(node, parameters, m_taker);
  }
  void setComputeRoutine() override { computeRoutine = &TakenRows::takeFirstBatch; }

 private:
  static bool takeFirstBatch(ActionItem* action);
  static bool takeBatch(ActionItem* action);
  bool take(const RowBatchPointer& batch);

  RowTaker& m_taker;
};

}  // namespace kelvarin
