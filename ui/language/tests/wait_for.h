// Waiting for what comes by an event, for tests.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace kelvarin {

// Handles events until the condition holds; false after ten seconds.
template <typename Condition>
bool waitFor(Condition condition) {
  const QDeadlineTimer deadline(std::chrono::seconds(10));
  while (!condition() && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return condition();
}

}  // namespace kelvarin
