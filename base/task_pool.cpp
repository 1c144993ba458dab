#include "base/task_pool.h"

#include <algorithm>

namespace kelvarin {

TaskPool::~TaskPool() {
  m_threads.clear();
}

void TaskPool::start() {
  m_threads.reserve(static_cast<std::size_t>(m_threadCount));
  for (int i = 0; i < m_threadCount; ++i) {
    m_threads.emplace_back([this](const std::stop_token& stop) { work(stop); });
  }
}

void TaskPool::submit(std::shared_ptr<PoolTask> task) {
  std::call_once(m_start, [this] { start(); });
  {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
  }
  m_changed.notify_one();
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

void TaskPool::work(const std::stop_token& stop) {
  if (m_begin) {
    m_begin();
  }
  std::unique_lock lock(m_mutex);
  while (m_changed.wait(lock, stop, [this] { return hasTask(kindForThread()); })) {
    if (stop.stop_requested()) {
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

}  // namespace kelvarin
