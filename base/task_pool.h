// Threads that carry out tasks, beside the thread that waits for their results.
//
// A task is carried out once, by whoever claims it first: a thread of the pool, or the waiting
// thread itself, which so never waits for a task that nobody has begun. Threads beyond the
// processors would only take them from one another, so that their number at work can be limited.
// Used by: host/engine, through the pipelines of a run.
// Threads: any.
// Errors: tasks keep their exceptions to themselves.
#pragma once

#include <atomic>
#include <climits>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "base/short_wait.h"

namespace kelvarin {

class PoolTask {
 public:
  virtual ~PoolTask() = default;
  // Must not throw.
  virtual void run() = 0;
  // It may wait for another program, so that only threads of the pool should begin it unasked.
  virtual bool mayWait() const { return false; }
  // True for the one that is to run it.
  bool claim() { return !m_isClaimed.exchange(true); }

 private:
  std::atomic<bool> m_isClaimed{false};
};

class TaskPool {
 public:
  // They are started with the first task; each calls `begin`, where there is one, before its own.
  // At one time `maxAtWork` of them compute; others wait, if only for another program.
  explicit TaskPool(int threads, std::function<void()> begin = {}, int maxAtWork = INT_MAX)
      : m_threadCount(threads), m_maxAtWork(maxAtWork), m_begin(std::move(begin)) {}
  // Tasks that nobody has begun are dropped.
  ~TaskPool();
  TaskPool(const TaskPool&) = delete;
  TaskPool& operator=(const TaskPool&) = delete;

  int threadCount() const { return m_threadCount; }
  void submit(std::shared_ptr<PoolTask> task);
  // Carries out one of the tasks that wait; false when there is none that may be begun here.
  bool runOne();

 private:
  void start();
  void work();
  void waitForTask(std::unique_lock<std::mutex>& lock, ShortWait& wait);
  // Which tasks a thread may begin.
  enum class Kind { any, thatCompute, thatMayWait };
  std::shared_ptr<PoolTask> takeClaimed(Kind kind);
  Kind kindForThread() const { return m_atWork < m_maxAtWork ? Kind::any : Kind::thatMayWait; }
  bool hasTask(Kind kind) const;

  const int m_threadCount;
  const int m_maxAtWork;
  const std::function<void()> m_begin;
  std::once_flag m_start;
  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_changed;
  std::deque<std::shared_ptr<PoolTask>> m_tasks;
  int m_atWork = 0;          // threads of the pool that compute
  bool m_isLooking = false;  // one of them does, for the next task
  bool m_isEnding = false;
  std::atomic<unsigned> m_changes{0};  // counted; read without the mutex, too
  std::vector<std::thread> m_threads;  // use all of the above
};

}  // namespace kelvarin
