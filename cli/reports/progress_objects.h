// How far a run is, for programs: a JSON object a line, every second, whether anything moves or
// not, and one at the end.
//
// Keys: `seconds` since the beginning; `done`, the share of the input from 0 to 1, and `remaining`,
// the seconds that the rest may take, null where they are not known; `rowsRead` and `bytesRead` by
// the sources, null where nobody knows; `actions` with the rows of each pin. The last object has
// `status` instead of `remaining`.
// Threads: update() on the engine's; objects are written by a thread of its own.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "host/engine/graph.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// The seconds that the rest of a run may take; -1 where there is too little to judge by.
double remainingSeconds(double fractionDone, double seconds);

class ProgressObjects {
 public:
  using Write = std::function<void(std::string_view line)>;

  // `isLimited`: sources need not read all of their files. `write` is called on any thread.
  ProgressObjects(const Graph& graph, bool isLimited, Write write);
  ~ProgressObjects();
  ProgressObjects(const ProgressObjects&) = delete;
  ProgressObjects& operator=(const ProgressObjects&) = delete;

  void update(const RunProgress& now);
  // The last object.
  void end(const RunResult& result);

 private:
  struct Source {
    std::size_t action = 0;
    long long bytes = 0;
  };

  static std::vector<Source> sourcesOf(const Graph& graph);
  void beat();
  void stop();
  double secondsSinceStart() const;
  double shareRead(std::size_t action, ActionPhase phase) const;
  double bytesRead(const RunProgress& now) const;
  std::string lineOf(const RunProgress& now, const char* status) const;

  const Write m_write;
  const bool m_isLimited;
  std::vector<std::string> m_names;  // of the actions
  std::vector<Source> m_sources;     // that read files whose size is known
  const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_ending;
  RunProgress m_latest;
  bool m_mustEnd = false;
  std::thread m_thread;
};

}  // namespace kelvarin
