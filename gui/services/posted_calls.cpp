#include "gui/services/posted_calls.h"

#include <utility>

#include <QPointer>

namespace kelvarin {

void PostedCalls::post(std::function<void()> call) {
  bool isFirst = false;
  {
    const std::lock_guard lock(m_mutex);
    isFirst = m_calls.empty();
    m_calls.push_back(std::move(call));
  }
  if (isFirst) {
    QMetaObject::invokeMethod(this, "makeCalls", Qt::QueuedConnection);
  }
}

// A call may destroy this object.
void PostedCalls::makeCalls() {
  std::vector<std::function<void()>> calls;
  {
    const std::lock_guard lock(m_mutex);
    calls = std::exchange(m_calls, {});
  }
  const QPointer<PostedCalls> self(this);
  for (const auto& call : calls) {
    if (self == nullptr) {
      return;
    }
    call();
  }
}

}  // namespace kelvarin
