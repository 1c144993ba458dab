// Work with a graph on a thread of its own, in a session of its own, that can be stopped.
//
// Used by: graph_run.cpp, design_columns.cpp.
// Threads: made, stopped and destroyed on the user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <thread>

#include "host/contract/global_parameters.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class HostServices;

class RunThread {
 public:
  // `services` get what actions log; null: nobody does. They outlive it.
  RunThread(HostServices* services, std::function<void(RunRecord& record)> work);
  // Stops the work and waits for its end.
  ~RunThread();
  RunThread(const RunThread&) = delete;
  RunThread& operator=(const RunThread&) = delete;

  void stop() { m_record->stop(); }

 private:
  const std::shared_ptr<RunRecord> m_record = std::make_shared<RunRecord>();
  std::thread m_thread;
};

}  // namespace kelvarin
