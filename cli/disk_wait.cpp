#include "cli/disk_wait.h"

#include <iostream>
#include <thread>

#include "cli/interrupt.h"
#include "cli/messages.h"

namespace kelvarin {

namespace {

constexpr int kLooksPerSecond = 10;

// False when the user interrupted meanwhile.
bool waitOneSecond() {
  for (int look = 0; look < kLooksPerSecond && !wasInterrupted(); ++look) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1000 / kLooksPerSecond));
  }
  return !wasInterrupted();
}

}  // namespace

DiskWait::DiskWait(Console& console, int seconds) : m_console(console), m_seconds(seconds) {}

bool DiskWait::shouldRetry(const QString& file, int missingBytes, bool canRetry) {
  const std::scoped_lock lock(m_mutex);
  const bool isAsking = Console::canAsk();
  report(file, missingBytes, canRetry && !isAsking);
  if (!canRetry || wasInterrupted()) {
    return false;
  }
  if (isAsking) {
    return ask();
  }
  if (m_waited >= m_seconds) {
    m_console.writeLog(LogLevel::error,
                       QString::fromLatin1(program_messages::kDiskStillFull).arg(m_waited).arg(file));
    return false;
  }
  ++m_waited;
  return waitOneSecond();
}

void DiskWait::report(const QString& file, int missingBytes, bool willWait) {
  if (m_reported.contains(file)) {
    return;
  }
  m_reported.insert(file);
  m_console.writeLog(LogLevel::error,
                     QString::fromLatin1(program_messages::kDiskFull).arg(file).arg(missingBytes));
  if (willWait) {
    m_console.writeLog(LogLevel::information,
                       QString::fromLatin1(program_messages::kDiskFullWaiting).arg(m_seconds));
  }
}

bool DiskWait::ask() {
  m_console.clearProgress();
  for (std::string answer; !wasInterrupted();) {
    m_console.write(program_messages::kDiskFullQuestion);
    if (!std::getline(std::cin, answer)) {
      return false;
    }
    if (answer == "r" || answer == "retry") {
      return true;
    }
    if (answer == "s" || answer == "stop") {
      return false;
    }
  }
  return false;
}

}  // namespace kelvarin
