// Calls that threads leave for the thread of an object, which takes them when it has time.
//
// No event of the application is sent from another thread. Shared by the object and its threads.
// Threads: any.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace kelvarin {

class CallQueue {
 public:
  using Call = std::function<void()>;

  // How often an object looks while something is under way.
  static constexpr std::chrono::milliseconds kInterval{10};

  void add(Call call) {
    const std::lock_guard lock(m_mutex);
    if (!m_isClosed) {
      m_calls.push_back(std::move(call));
    }
  }
  // In the order in which they were added.
  std::vector<Call> take() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_calls, {});
  }
  // Nobody takes them any more.
  void close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_calls.clear();
  }

 private:
  std::mutex m_mutex;  // guards all below
  std::vector<Call> m_calls;
  bool m_isClosed = false;
};

}  // namespace kelvarin
