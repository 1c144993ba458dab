// Finds out how long each action of a run computes by itself, by looking now and then at which ones
// are at work, on the engine thread and on those of the pool.
//
// The engine does nothing for it: the action at work is known anyway. Short intervals at the
// beginning, so that short runs get their share, longer ones later; a run takes some hundred
// samples.
// Used by: graph_execution.cpp.
// Threads: made, asked and destroyed on the engine thread; it looks from one of its own.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "host/contract/host_session.h"
#include "host/engine/progress_meter.h"

class ActionItem;

namespace kelvarin {

class ActivitySampler {
 public:
  // Watches the thread that makes it. Null stands for an action that takes no part. Asks `meter`
  // for a report ten times a second.
  ActivitySampler(const std::vector<const ActionItem*>& actions, ProgressMeter& meter);
  ~ActivitySampler();
  ActivitySampler(const ActivitySampler&) = delete;
  ActivitySampler& operator=(const ActivitySampler&) = delete;

  // Watches the calling thread as well, which lives until stop(). Any thread.
  void watchThisThread();
  // Looks no more.
  void stop();
  // Of the action with that index so far; of several threads the sum.
  double seconds(int action) const;

 private:
  using Clock = std::chrono::steady_clock;

  void watch();
  void addTime(std::chrono::nanoseconds time);

  std::unordered_map<const ActionItem*, std::size_t> m_indexOfAction;
  std::vector<std::atomic<long long>> m_nanoseconds;
  ProgressMeter& m_meter;
  std::mutex m_mutex;                                 // guards m_threads and m_mustEnd
  std::vector<const CurrentAction::Slot*> m_threads;  // where they have the action at work
  std::condition_variable m_ending;
  bool m_mustEnd = false;
  std::thread m_thread;  // uses all of the above
};

}  // namespace kelvarin
