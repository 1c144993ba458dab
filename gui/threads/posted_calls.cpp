#include "gui/threads/posted_calls.h"

#include <utility>

namespace kelvarin {

// Each call is an event of its own: one that waits for the user, in an event loop within, does not
// hold up those behind it. The event, too, is made before the lock is given back.
void PostedCalls::post(std::function<void()> call) {
  const std::lock_guard lock(m_mutex);
  m_calls.push_back(std::move(call));
  QMetaObject::invokeMethod(this, "makeCall", Qt::QueuedConnection);
}

// The call may destroy this object.
void PostedCalls::makeCall() {
  std::function<void()> call;
  {
    const std::lock_guard lock(m_mutex);
    call = std::move(m_calls.front());
    m_calls.pop_front();
  }
  call();
}

}  // namespace kelvarin
