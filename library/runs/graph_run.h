// A graph and its one run, on a thread of its own, with streams at its sources and sinks.
//
// Threads: any; operations wait for each other, but for wait() and stop().
// Errors: those of the graph, the run, or of a call that comes at the wrong time.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

#include "host/engine/graph_reader.h"
#include "library/runs/stream_queue.h"
#include "library/runs/stream_source.h"
#include "library/runs/whole_run.h"

namespace kelvarin {

struct GraphRunSettings {
  std::vector<ParameterOverride> parameters;
  WorkSettings work;
  kelvarin_progress progress{};
};

class GraphRun {
 public:
  // As the interface returns them, in UTF-8.
  struct Action {
    std::string name;
    std::string type;
    int inputs = 0;
    int outputs = 0;
  };

  // `path` is absolute; without a document its file is read.
  static Outcome<std::shared_ptr<GraphRun>> open(const std::optional<QByteArray>& document,
                                                 const QString& path, GraphRunSettings settings);
  // Stops the run and waits for its end.
  ~GraphRun();
  GraphRun(const GraphRun&) = delete;
  GraphRun& operator=(const GraphRun&) = delete;

  const std::vector<Action>& actions() const { return m_actions; }
  Outcome<Done> bindInput(const QString& action, InputStream stream, InputSettings settings);
  Outcome<std::unique_ptr<BatchSupply>> bindOutput(const QString& action, const BatchForm& form);

  Outcome<Done> start();
  void stop() { m_stop.request_stop(); }
  // `milliseconds` -1: without a limit. The error is that of the run.
  Outcome<Done> wait(std::int64_t milliseconds);
  // As `kelvarin run --json` prints it.
  Outcome<std::string> result();
  std::string progress();

 private:
  GraphRun(Graph graph, GraphRunSettings settings);

  Outcome<int> indexBeforeStart(const QString& action) const;
  void work();
  void noteProgress(const RunProgress& progress);

  Graph m_graph;
  GraphRunSettings m_settings;
  std::vector<Action> m_actions;
  std::stop_source m_stop;

  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_changed;
  std::vector<std::shared_ptr<StreamQueue>> m_queues;
  bool m_hasStarted = false;
  std::optional<RunResult> m_result;
  RunProgress m_progress;

  using StopCallback = std::stop_callback<std::function<void()>>;
  std::optional<StopCallback> m_stopOfProgram;  // both use all of the above
  std::thread m_thread;
};

}  // namespace kelvarin
