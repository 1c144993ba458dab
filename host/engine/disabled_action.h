// Runs in the stead of an action that is switched off: the rows of input pin 0 go through unchanged
// to output pin 0.
//
// The other outputs have the same columns and no rows. A source that is switched off has neither;
// a sink takes its rows and writes nothing. The action itself is not touched.
// Used by: graph_execution.cpp.
// Threads: those of ActionItem.
#pragma once

#include "host/contract/action_item.h"

namespace kelvarin {

class DisabledAction final : public ActionItem, public BatchTransform {
 public:
  explicit DisabledAction(const ActionItem& action);

  const char* typeName() const override { return m_action.typeName(); }
  void setComputeRoutine() override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

  const BatchStage* stage() const override { return m_hasColumns ? &m_stage : nullptr; }
  void passRows(std::size_t) override {}

 private:
  // Passes every batch on as it is.
  class Passing final : public BatchStage {
   public:
    StageResult process(const RowBatch& batch, long long) const override {
      StageResult result;
      result.rowsDone = batch.rowCount();
      result.outputs[0] = std::make_shared<RowBatch>(batch);
      return result;
    }
    bool needsRowNumbers() const override { return false; }
  };

  bool discardRow() { return getNextRowFromInPin(0) == nullptr; }
  bool passRow();
  void announceColumns(const OneRow& columns);

  const ActionItem& m_action;
  bool m_hasColumns = false;
  Passing m_stage;
};

}  // namespace kelvarin
