// Limits how many workers encode at the same time.
//
// std::counting_semaphore of GCC 12 may lose a wake-up, so it cannot be used.
//
// Threads: any.
#pragma once

#include <condition_variable>
#include <mutex>

namespace kelvarin {

class ThreadPermits {
 public:
  explicit ThreadPermits(int count) : m_left(count) {}

  // Holds a permit while it lives.
  class Permit {
   public:
    explicit Permit(ThreadPermits& permits) : m_permits(permits) { m_permits.acquire(); }
    ~Permit() { m_permits.release(); }
    Permit(const Permit&) = delete;
    Permit& operator=(const Permit&) = delete;

   private:
    ThreadPermits& m_permits;
  };

 private:
  void acquire() {
    std::unique_lock lock(m_mutex);
    m_released.wait(lock, [this] { return m_left > 0; });
    --m_left;
  }
  void release() {
    const std::lock_guard lock(m_mutex);
    ++m_left;
    m_released.notify_one();
  }

  std::mutex m_mutex;  // guards m_left
  std::condition_variable m_released;
  int m_left;
};

}  // namespace kelvarin
