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
    // Waits for it.
    explicit Permit(ThreadPermits& permits) : m_permits(permits) { m_permits.acquire(); }
    // Holds none where there is none left.
    Permit(ThreadPermits& permits, std::try_to_lock_t)
        : m_permits(permits), m_isHeld(m_permits.tryToAcquire()) {}
    ~Permit() {
      if (m_isHeld) {
        m_permits.release();
      }
    }
    Permit(const Permit&) = delete;
    Permit& operator=(const Permit&) = delete;

    bool isHeld() const { return m_isHeld; }

   private:
    ThreadPermits& m_permits;
    const bool m_isHeld = true;
  };

 private:
  void acquire() {
    std::unique_lock lock(m_mutex);
    m_released.wait(lock, [this] { return m_left > 0; });
    --m_left;
  }
  bool tryToAcquire() {
    const std::lock_guard lock(m_mutex);
    const bool isLeft = m_left > 0;
    m_left -= isLeft ? 1 : 0;
    return isLeft;
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
