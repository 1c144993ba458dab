// Drives the actions of a graph, or of a part of it, through one run: makes their links, opens
// them, has their sinks pull (sink_schedule.h), closes them, and counts.
//
// Used by: run_graph.cpp, check_graph.cpp, branch_run.cpp.
// Threads: the engine thread, which may become another one between two calls (enterThread()).
// Errors: logged on behalf of an action, and its record is failed.
#pragma once

#include <memory>
#include <vector>

#include "base/task_pool.h"
#include "host/engine/activity_sampler.h"
#include "host/engine/disabled_action.h"
#include "host/engine/execution_options.h"
#include "host/engine/graph_links.h"
#include "host/engine/row_links.h"
#include "host/engine/running_action.h"
#include "host/engine/sink_schedule.h"

namespace kelvarin {

class GraphExecution {
 public:
  // `records` has the record of every action of the graph, null for those that take no part. Where
  // a record computes in full and its reader's does not, the reader gets the columns and no rows;
  // variable tables, on pins after the first, get their rows. `stopSwitch` stops everything.
  GraphExecution(const Graph& graph, std::vector<RunRecord*> records, RunRecord& stopSwitch,
                 const ExecutionOptions& options);
  GraphExecution(const GraphExecution&) = delete;
  GraphExecution& operator=(const GraphExecution&) = delete;
  // Closes what an exception has left open.
  ~GraphExecution();

  // The calling thread is the engine thread from now on.
  void enterThread() const;
  // False when an action refuses; all are asked, so that the log has every reason.
  bool open();
  // Runs until every sink has finished or the run stops.
  void drive() { m_schedule.drive(); }
  // Closes what was opened, sinks last. A record of an action that fails here is failed, whatever
  // it was before.
  void close();

  // Null for an action that takes no part.
  RunningAction* action(int index) const {
    return m_actions[static_cast<std::size_t>(index)].get();
  }
  const std::vector<int>& order() const { return m_order; }
  std::vector<long long> rowsIn(int index) const;
  std::vector<long long> rowsOut(int index) const;
  ActionProgress progressOf(int index) const;

 private:
  void makeAction(int index);
  bool takesPart(const GraphLink& link) const;
  void makeLink(const GraphLink& link);
  bool isForked(int action) const;
  std::unique_ptr<RowLink> newLink(const GraphLink& link, RunningAction& from, RunningAction& to);
  Fork& forkOf(RunningAction& producer, int pin);
  void findReadPins(RunningAction& action) const;
  void closeAction(int index);
  void wakeAll();
  void startSampler();
  RunProgress progress() const;

  const Graph& m_graph;
  std::vector<RunRecord*> m_records;
  RunRecord& m_stopSwitch;
  ExecutionOptions m_options;
  ProgressMeter m_progress;
  std::unique_ptr<ActivitySampler> m_sampler;  // null where nobody asks for progress
  std::unique_ptr<TaskPool> m_pool;            // null where everything is done on the engine thread
  GraphLinks m_links;
  std::vector<int> m_order;
  std::vector<std::unique_ptr<DisabledAction>> m_disabledActions;
  std::vector<std::unique_ptr<Fork>> m_forks;
  std::vector<std::vector<RowLink*>> m_linkOfPin;  // [action][pin], null when not linked
  std::vector<std::unique_ptr<RunningAction>> m_actions;
  SinkSchedule m_schedule;
};

}  // namespace kelvarin
