// Jobs of the user-interface thread that are done beside it, one after the other, on one thread.
//
// What a job holds passes under a lock of this class, to the thread and back.
// Used by: document_file.h and recovery_journal.h, for what touches the disk.
// Threads: any.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace kelvarin {

class JobThread {
 public:
  JobThread() = default;
  // Waits until all jobs are done.
  ~JobThread();
  JobThread(const JobThread&) = delete;
  JobThread& operator=(const JobThread&) = delete;

  // The thread is started with the first job.
  void start(std::function<void()> job);
  void waitForDone();

 private:
  void work();

  std::mutex m_mutex;  // guards what follows, up to the thread
  std::condition_variable m_changed;
  std::deque<std::function<void()>> m_jobs;  // the first one is at work
  bool m_isEnding = false;
  std::optional<std::thread> m_thread;
};

}  // namespace kelvarin
