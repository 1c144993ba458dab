// A queue of bounded length between one thread that makes things and one that takes them.
//
// Either side may leave: then the other one stops waiting.
// Threads: waitForRoom(), put() and finish() on the making thread, take() and abandon() on the
// taking one; all members belong to the mutex.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace kelvarin {

template <typename T>
class HandOver {
 public:
  // At least one thing may wait.
  explicit HandOver(std::size_t capacity) : m_capacity(capacity) {}

  // Waits until one more thing has room, so that it need not be made before. False when nobody
  // takes things any more.
  bool waitForRoom() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isAbandoned || m_things.size() < m_capacity; });
    return !m_isAbandoned;
  }

  // After waitForRoom().
  void put(T thing) {
    const std::lock_guard lock(m_mutex);
    m_things.push_back(std::move(thing));
    m_changed.notify_all();
  }

  // Nothing more comes.
  void finish() {
    const std::lock_guard lock(m_mutex);
    m_isFinished = true;
    m_changed.notify_all();
  }

  // Waits for the next thing; nothing when all have been taken and no more come.
  std::optional<T> take() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isFinished || !m_things.empty(); });
    if (m_things.empty()) {
      return std::nullopt;
    }
    std::optional<T> thing(std::move(m_things.front()));
    m_things.pop_front();
    m_changed.notify_all();
    return thing;
  }

  // Nothing is taken any more.
  void abandon() {
    const std::lock_guard lock(m_mutex);
    m_isAbandoned = true;
    m_changed.notify_all();
  }

 private:
  const std::size_t m_capacity;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<T> m_things;
  bool m_isFinished = false;
  bool m_isAbandoned = false;
};

}  // namespace kelvarin
