// One action in one run: its pins, its row routine, what it does with whole batches, and whether it
// has finished.
//
// Used by: graph_execution.cpp, row_links.cpp.
// Threads: the engine thread.
// Errors: an exception out of an action means that memory does not suffice, or is our bug; it is
// logged with the action's name and fails the run.
#pragma once

#include <utility>
#include <vector>

#include "host/contract/action_item.h"
#include "host/contract/batch_rows.h"
#include "host/contract/host_session.h"
#include "host/engine/batch_trail.h"
#include "host/engine/execution_options.h"
#include "host/engine/progress_meter.h"

namespace kelvarin {

class Fork;
class QueueLink;
class RowLink;

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

  // False when the action refuses to run.
  bool open();
  // False when the action failed, now or before.
  bool close();

  bool hasBegun() const { return m_hasBegun; }
  bool isFinished() const { return m_item.isFinished(); }
  bool isComputing() const { return m_isComputing; }
  bool canGoOn() const { return !isFinished() && m_record.isRunning() && m_stopSwitch.isRunning(); }

  // Works on one batch or one row; false when the action will not produce anything more.
  bool advance() {
    if (!canGoOn()) [[unlikely]] {
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
  bool readBatch();
  void publishUnit();
  bool transformBatch();
  void publish(BatchTrail::Origin origin);
  void publish(int pin, PublishedBatch published);
  void noteFirstRow();
  void releaseRows();
  template <typename Call>
  auto guarded(Call call, decltype(call()) afterException);

  ActionItem& m_item;
  const int m_index;
  RunRecord& m_record;
  const RunRecord& m_stopSwitch;
  ProgressMeter& m_progress;
  const ActionItem*& m_currentAction;  // of this thread
  BatchSource* const m_source;         // the action, where it is one
  BatchTransform* const m_transform;   // the same
  const int m_rowsInBatch;             // at most; 0: as they come
  ActionPorts m_ports;
  RowLink* m_input = nullptr;
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
