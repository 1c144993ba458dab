// The gate between two rows of a debug run: a counting semaphore that is created with no permit.
//
// Used by DebugSession: the engine's thread acquires, the user's steps release.
// Threads: any.
#pragma once

#include <condition_variable>
#include <mutex>

namespace kelvarin {

class StepGate {
 public:
  void release() {
    {
      const std::lock_guard lock(m_mutex);
      ++m_permits;
    }
    m_released.notify_one();
  }
  // Waits for a permit and takes it.
  void acquire() {
    std::unique_lock lock(m_mutex);
    m_released.wait(lock, [this] { return m_permits > 0; });
    --m_permits;
  }
  // Takes every permit that is available.
  void drain() {
    const std::lock_guard lock(m_mutex);
    m_permits = 0;
  }

 private:
  std::mutex m_mutex;  // guards m_permits
  std::condition_variable m_released;
  long long m_permits = 0;
};

}  // namespace kelvarin
