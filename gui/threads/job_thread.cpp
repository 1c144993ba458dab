#include "gui/threads/job_thread.h"

#include <utility>

namespace kelvarin {

JobThread::~JobThread() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  m_changed.notify_all();
  if (m_thread) {
    m_thread->join();
  }
}

void JobThread::start(std::function<void()> job) {
  {
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (!m_thread) {
      m_thread.emplace([this] { work(); });
    }
  }
  m_changed.notify_all();
}

void JobThread::waitForDone() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_jobs.empty(); });
}

void JobThread::work() {
  std::unique_lock lock(m_mutex);
  while (true) {
    m_changed.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
    if (m_jobs.empty()) {
      return;
    }
    std::function<void()> job = std::move(m_jobs.front());
    lock.unlock();
    job();
    job = {};
    lock.lock();
    m_jobs.pop_front();
    m_changed.notify_all();
  }
}

}  // namespace kelvarin
