// One action in one run: its pins, its row routine, and whether it has finished.
//
// Used by: graph_execution.cpp, row_links.cpp.
// Threads: the engine thread.
// Errors: an exception out of an action means that memory does not suffice, or is our bug; it is
// logged with the action's name and fails the run.
#pragma once

#include <vector>

#include "host/contract/action_item.h"
#include "host/contract/host_session.h"
#include "host/engine/execution_options.h"
#include "host/engine/progress_meter.h"

namespace kelvarin {

class QueueLink;

class RunningAction {
 public:
  // `index` is the action's in its graph. `record` is what the action sees; `stopSwitch` is the
  // record through which the user stops, often the same.
  RunningAction(ActionItem& item, int index, RunRecord& record, const RunRecord& stopSwitch,
                ProgressMeter& progress);
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

  // Calls the row routine once; false when the action will not produce anything more.
  bool advance() {
    if (!canGoOn()) [[unlikely]] {
      releaseRows();
      return false;
    }
    compute();
    return true;
  }

  // Has the rows of the last offer go by, as many as that.
  void takeRows(OutputPin& pin, std::size_t count);

  ActionPhase phase() const;

  // Logs an error on behalf of the action and fails its run.
  void fail(const QString& text);

  void addQueue(QueueLink* queue) { m_queues.push_back(queue); }
  // It takes no more rows, from any pin. The row that it made last may still be read.
  void letRowsGo();

 private:
  void compute();
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
  ActionPorts m_ports;
  std::vector<QueueLink*> m_queues;  // of this action's input pins
  bool m_hasBegun = false;
  bool m_isComputing = false;
  bool m_hasCompleted = false;  // it finished, and not because the run was over
  bool m_awaitsFirstRow;
};

}  // namespace kelvarin
