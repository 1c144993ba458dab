// A queue of limited capacity between a producing and a consuming thread.
//
// The producer waits while the queue is full (backpressure), the consumer while it is empty.
// finish() lets the consumer take what is left; stop() ends every wait at once.
// Used by columnar/writer and columnar/reader.
// Threads: waitForSpace(), push() and finish() on the producing one, pop() on the consuming one,
// stop() on any.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace kelvarin {

template <typename T>
class BoundedQueue {
 public:
  // `capacity` is at least 1.
  explicit BoundedQueue(std::size_t capacity) : m_capacity(capacity) {}

  // Waits until one more element fits, so that it need not be made before. False: stopped.
  [[nodiscard]] bool waitForSpace() {
    std::unique_lock lock(m_mutex);
    return waitForSpace(lock);
  }

  // Waits until the element fits. False: stopped, and the element is dropped.
  bool push(T element) {
    std::unique_lock lock(m_mutex);
    if (!waitForSpace(lock)) {
      return false;
    }
    m_elements.push_back(std::move(element));
    lock.unlock();  // so that whoever wakes up does not wait for it
    m_changed.notify_all();
    return true;
  }

  // No more elements follow.
  void finish() {
    const std::lock_guard lock(m_mutex);
    m_isFinished = true;
    m_changed.notify_all();
  }

  // Waits for the next element. Nothing: all elements have been taken and no more follow, or
  // stopped.
  [[nodiscard]] std::optional<T> pop() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopped || m_isFinished || !m_elements.empty(); });
    if (m_isStopped || m_elements.empty()) {
      return std::nullopt;
    }
    std::optional<T> element(std::move(m_elements.front()));
    m_elements.pop_front();
    lock.unlock();
    m_changed.notify_all();
    return element;
  }

  // Ends every wait, now and later.
  void stop() {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
  }

 private:
  bool waitForSpace(std::unique_lock<std::mutex>& lock) {
    m_changed.wait(lock, [this] { return m_isStopped || m_elements.size() < m_capacity; });
    return !m_isStopped;
  }

  const std::size_t m_capacity;
  std::mutex m_mutex;  // guards all members below
  std::condition_variable m_changed;
  std::deque<T> m_elements;
  bool m_isFinished = false;
  bool m_isStopped = false;
};

}  // namespace kelvarin
