// One action in one run: its pins, its row routine, what it does with whole batches, and whether it
// has finished.
//
// Used by: graph_execution.cpp, row_links.cpp.
// Threads: the engine thread.
// Errors: an exception out of an action means that memory does not suffice, or is our bug; it is
// logged with the action's name and fails the run.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/contract/action_item.h"
#include "host/contract/batch_rows.h"
#include "host/contract/host_session.h"
#include "host/engine/batch_trail.h"
#include "host/engine/execution_options.h"
#include "host/engine/progress_meter.h"

namespace kelvarin {

class ActionChain;
class Fork;
class QueueLink;
class RowLink;
class TaskPool;

class RunningAction {
 public:
  // `index` is the action's in its graph. `record` is what the action sees; `stopSwitch` is the
  // record through which the user stops, often the same.
  RunningAction(ActionItem& item, int index, RunRecord& record, const RunRecord& stopSwitch,
                ProgressMeter& progress, const ExecutionOptions& options);
  ~RunningAction();
  RunningAction(const RunningAction&) = delete;
  RunningAction& operator=(const RunningAction&) = delete;

  ActionItem& item() const { return m_item; }
  int index() const { return m_index; }
  ActionPorts& ports() { return m_ports; }
  const ActionPorts& ports() const { return m_ports; }
  OutputPin& output(int pin) const { return *m_ports.outputs[static_cast<std::size_t>(pin)]; }
  RunRecord& record() const { return m_record; }
  // On all its pins.
  long long rowsPublished() const;

  // The calling thread is the engine thread from now on.
  void enterThread() { m_currentAction = &CurrentAction::slot(); }
  // False when the action refuses to run.
  bool open();
  // Tasks in its name end; before any action is closed.
  void stopWorkingAhead();
  // False when the action failed, now or before.
  bool close();

  bool hasBegun() const { return m_hasBegun; }
  // Of a source: 0 to 1; -1 when unknown.
  double fractionDone() const;
  bool isFinished() const { return m_item.isFinished(); }
  bool isComputing() const { return m_isComputing; }
  bool canGoOn() const { return !isFinished() && m_record.isRunning() && m_stopSwitch.isRunning(); }

  // The run has failed, and there are rows before the failure that it takes nevertheless.
  bool mustTakePending() const;

  // Works on one batch or one row; false when the action will not produce anything more.
  bool advance() {
    if (!canGoOn() && !mustTakePending()) [[unlikely]] {
      releaseRows();
      return false;
    }
    compute();
    return true;
  }

  // The link of input pin 0; null when nothing is linked to it.
  void setInput(RowLink* link) { m_input = link; }
  RowLink* input() const { return m_input; }
  void setFork(int pin, Fork* fork) { m_forks[static_cast<std::size_t>(pin)] = fork; }
  // A batch waits for the one link of the pin.
  bool hasBatch(int pin) const {
    return m_published[static_cast<std::size_t>(pin)].batch != nullptr;
  }
  PublishedBatch takeBatch(int pin) {
    return std::exchange(m_published[static_cast<std::size_t>(pin)], {});
  }
  BatchSource* source() const { return m_source; }
  BatchTransform* transform() const { return m_transform; }
  bool isBatchSink() const { return m_sink != nullptr; }
  // Null: it is no sink of batches, or has none, or none yet.
  const BatchEncoder* encoder() const { return m_sink == nullptr ? nullptr : m_sink->encoder(); }
  // Null: everything is done on the engine thread.
  void setPool(TaskPool* pool) { m_pool = pool; }
  TaskPool* pool() const { return m_pool; }
  // The link that reads its only pin that is read; null where rows go elsewhere.
  void setReader(RowLink* link) { m_reader = link; }
  RowLink* reader() const { return m_reader; }
  // It is part of a chain that ends with another action.
  void setCovered(bool isCovered) { m_isCovered = isCovered; }
  // Of a source: the chain that has begun some of its units.
  ActionChain* unitHolder() const { return m_unitHolder; }
  void setUnitHolder(ActionChain* chain) { m_unitHolder = chain; }
  // Of a source whose units are published in parts.
  bool hasPartOfUnit() const { return m_unitRows.rowsLeft() > 0; }
  int rowsInBatch() const { return m_rowsInBatch; }

  // A source that has made as many rows as the run takes of each.
  bool hasReachedLimit() const { return m_rowsToMake && *m_rowsToMake <= 0; }
  // Of a source.
  bool canReadUnits() const { return !hasReachedLimit() && m_source->canReadUnits(); }

  // For chains, in the order of the rows.
  RowBatchPointer accept(BatchUnit& unit);
  void publish(BatchTrail::Origin origin, std::unique_ptr<EncodedBatch> encoded = nullptr);
  void publish(int pin, PublishedBatch published);
  // Of a source: its batches may have late texts from now on, where whoever gets them gains by it.
  void allowLateTexts();
  // As if its row routine had thrown it.
  void failWith(const std::exception_ptr& exception);

  bool mayPublishBatches() const { return m_source != nullptr || m_transform != nullptr; }

  ActionPhase phase() const;

  // Logs an error on behalf of the action and fails its run.
  void fail(const QString& text);

  void addQueue(QueueLink* queue) { m_queues.push_back(queue); }
  // It takes no more rows, from any pin. The row that it made last may still be read.
  void letRowsGo();

 private:
  void compute();
  bool step();
  bool endsWithFailure() const;
  bool readBatch();
  bool startUnit();
  void publishUnit();
  bool transformBatch();
  bool workAhead();
  void noteFirstRow();
  void releaseRows();
  template <typename Call>
  auto guarded(Call call, decltype(call()) afterException);

  ActionItem& m_item;
  const int m_index;
  RunRecord& m_record;
  const RunRecord& m_stopSwitch;
  ProgressMeter& m_progress;
  CurrentAction::Slot* m_currentAction;   // of the engine thread
  BatchSource* const m_source;            // the action, where it is one
  BatchTransform* const m_transform;      // the same
  BatchSink* const m_sink;                // the same
  const int m_rowsInBatch;                // at most; 0: as they come
  const long long m_rowLimit;             // of a source; 0: none
  std::optional<long long> m_rowsToMake;  // of a source with a limit, up to that
  ActionPorts m_ports;
  RowLink* m_input = nullptr;
  RowLink* m_reader = nullptr;
  TaskPool* m_pool = nullptr;
  std::unique_ptr<ActionChain> m_chain;  // the one that ends with this action
  ActionChain* m_unitHolder = nullptr;
  bool m_isCovered = false;
  int m_callsToLook = 0;                    // for such a chain
  int m_callsAtFirst = 8;                   // at each of which it is looked for
  std::vector<QueueLink*> m_queues;         // of this action's input pins
  std::vector<Fork*> m_forks;               // of the output pins, null where there is none
  std::vector<PublishedBatch> m_published;  // by output pin
  BatchRows m_unitRows;                     // of a source, to be published in parts
  bool m_hasBegun = false;
  bool m_isComputing = false;
  bool m_hasCompleted = false;  // it finished, and not because the run was over
  bool m_awaitsFirstRow;
};

}  // namespace kelvarin
