// Calls that other threads post to the thread of an object, for as long as the object is there.
//
// Shared between the object and the threads that work for it.
// Threads: any.
#pragma once

#include <functional>
#include <mutex>

#include <QObject>

namespace kelvarin {

class PostedCalls {
 public:
  explicit PostedCalls(QObject* target) : m_target(target) {}

  // Called later on the target's thread, unless closed or the target is gone by then.
  void post(std::function<void()> call) {
    const std::lock_guard lock(m_mutex);
    if (m_target != nullptr) {
      QMetaObject::invokeMethod(m_target, std::move(call), Qt::QueuedConnection);
    }
  }
  // To be called before the target goes.
  void close() {
    const std::lock_guard lock(m_mutex);
    m_target = nullptr;
  }

 private:
  std::mutex m_mutex;  // guards m_target
  QObject* m_target;
};

}  // namespace kelvarin
