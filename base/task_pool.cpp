#include "base/task_pool.h"

#include <algorithm>

namespace kelvarin {

TaskPool::~TaskPool() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    ++m_changes;
  }
  m_changed.notify_all();
  for (std::thread& thread : m_threads) {
    thread.join();
  }
}

void TaskPool::start() {
  m_threads.reserve(static_cast<std::size_t>(m_threadCount));
  for (int i = 0; i < m_threadCount; ++i) {
    m_threads.emplace_back([this] { work(); });
  }
}

void TaskPool::submit(std::shared_ptr<PoolTask> task) {
  std::call_once(m_start, [this] { start(); });
  bool isLookedFor = false;
  {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
    ++m_changes;
    isLookedFor = m_isLooking && m_tasks.size() == 1;
  }
  if (!isLookedFor) {
    m_changed.notify_one();
  }
}

bool TaskPool::runOne() {
  std::shared_ptr<PoolTask> task;
  {
    const std::lock_guard lock(m_mutex);
    task = takeClaimed(Kind::thatCompute);
  }
  if (task == nullptr) {
    return false;
  }
  task->run();
  return true;
}

// The oldest that nobody has begun; those that somebody has are forgotten on the way.
std::shared_ptr<PoolTask> TaskPool::takeClaimed(Kind kind) {
  for (auto task = m_tasks.begin(); task != m_tasks.end();) {
    if (kind != Kind::any && (*task)->mayWait() != (kind == Kind::thatMayWait)) {
      ++task;
      continue;
    }
    std::shared_ptr<PoolTask> taken = std::move(*task);
    task = m_tasks.erase(task);
    if (taken->claim()) {
      return taken;
    }
  }
  return nullptr;
}

bool TaskPool::hasTask(Kind kind) const {
  return kind == Kind::any ? !m_tasks.empty()
                           : std::any_of(m_tasks.begin(), m_tasks.end(),
                                         [](const auto& task) { return task->mayWait(); });
}

void TaskPool::work() {
  if (m_begin) {
    m_begin();
  }
  ShortWait wait;
  std::unique_lock lock(m_mutex);
  for (;;) {
    waitForTask(lock, wait);
    if (m_isEnding) {
      return;
    }
    const std::shared_ptr<PoolTask> task = takeClaimed(kindForThread());
    if (task == nullptr) {
      continue;
    }
    const int computing = task->mayWait() ? 0 : 1;
    m_atWork += computing;
    lock.unlock();
    task->run();
    lock.lock();
    m_atWork -= computing;
  }
}

// With the mutex locked. One thread at most looks, so that few processors are busy with it.
void TaskPool::waitForTask(std::unique_lock<std::mutex>& lock, ShortWait& wait) {
  const auto isOver = [this] { return m_isEnding || hasTask(kindForThread()); };
  if (isOver()) {
    return;
  }
  if (!m_isLooking) {
    m_isLooking = true;
    const unsigned changes = m_changes;
    lock.unlock();
    wait.look([&] { return m_changes.load(std::memory_order_relaxed) != changes; });
    lock.lock();
    m_isLooking = false;
  }
  if (!isOver()) {
    m_changed.wait(lock, isOver);
    wait.noteEnd();
  }
}

}  // namespace kelvarin
