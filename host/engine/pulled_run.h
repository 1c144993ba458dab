// A run of a graph with one sink that goes on only when somebody asks for more.
//
// Between two calls nothing is at work but the tasks that were begun ahead. A run that is not taken
// to its end is closed with the object.
// Used by: the library whose streams are computed while they are pulled.
// Threads: one at a time, another one at each call if need be; stop() on any.
// Errors: in the log; an exception of the engine leaves the call.
#pragma once

#include <memory>

#include "host/contract/host_session.h"
#include "host/engine/graph_execution.h"
#include "host/engine/recording_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class PulledRun {
 public:
  // `services` may be null, and outlives the object. `firstRow`: see RunRecord.
  PulledRun(Graph graph, HostServices* services, long long firstRow = 0);
  ~PulledRun();
  PulledRun(const PulledRun&) = delete;
  PulledRun& operator=(const PulledRun&) = delete;

  const Graph& graph() const { return m_graph; }
  // False when an action refuses to run.
  bool open();
  // Makes the action go on until its first output has its columns; it publishes no rows meanwhile
  // where it is a source of units. Null: it has ended without.
  const OneRow* columnsOfOutput(int action);
  // Lets the sink take rows once. False: there are no more, or the run has failed or was stopped.
  bool advance();
  // Ends the run; sinks keep what they have only where it has come to its end.
  void close();
  void stop() { m_record.stop(); }

  GlobalParameters::RunningState state() const { return m_record.status; }
  std::vector<LogLine> takeLog() { return m_services.takeLog(); }
  // See BatchTransform; it lives until the run is closed. Null: it has none, or none yet.
  const BatchStage* stageOf(int action) const;
  ActionReport reportOf(int action) { return m_services.reportOf(item(action)); }

 private:
  class Turn;

  const ActionItem& item(int action) const {
    return *m_graph.actions[static_cast<std::size_t>(action)].item;
  }
  int sink() const;

  Graph m_graph;
  RecordingServices m_services;
  HostSession m_session{&m_services};
  RunRecord m_record;
  std::unique_ptr<GraphExecution> m_execution;
  RunningAction* m_sink = nullptr;
};

}  // namespace kelvarin
