#include "cli/disk_wait.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

#include "cli/interrupt.h"
#include "cli/messages.h"
#include "host/engine/messages.h"

namespace kelvarin {

DiskWait::DiskWait(Console& console, int seconds) : m_console(console), m_seconds(seconds) {}

bool DiskWait::shouldRetry(const QString& file, int missingBytes, bool canRetry) {
  const std::scoped_lock lock(m_mutex);
  if (m_isStopping) {
    return false;
  }
  const bool isAsking = Console::canAsk();
  report(file, missingBytes, canRetry && !isAsking);
  if (!canRetry || wasInterrupted()) {
    return false;
  }
  m_isStopping = isAsking ? !ask() : !waitAWhile(file);
  return !m_isStopping;
}

bool DiskWait::waitAWhile(const QString& file) {
  if (m_waited >= m_seconds) {
    m_console.writeLog(LogLevel::error, program_messages::diskStillFull(m_waited, file));
    return false;
  }
  ++m_waited;
  constexpr int kMillisecondsBetweenTries = 1000;
  return !isInterruptedWithin(kMillisecondsBetweenTries);
}

void DiskWait::report(const QString& file, int missingBytes, bool willWait) {
  if (m_reported.contains(file)) {
    return;
  }
  m_reported.insert(file);
  m_console.writeLog(LogLevel::error, engine_messages::diskFull(file, missingBytes));
  if (willWait) {
    m_console.writeLog(LogLevel::information, program_messages::diskFullWaiting(m_seconds));
  }
}

bool DiskWait::ask() {
  m_console.clearProgress();
  while (true) {
    m_console.write(program_messages::diskFullQuestion());
    const std::optional<std::string> answer = readAnswer();
    if (!answer || *answer == "s" || *answer == "stop") {
      return false;
    }
    if (*answer == "r" || *answer == "retry") {
      return true;
    }
  }
}

// A line from the terminal; none when it is closed or a signal arrives.
std::optional<std::string> DiskWait::readAnswer() {
  std::size_t end = m_typed.find('\n');
  while (end == std::string::npos) {
    if (!awaitInput(STDIN_FILENO)) {
      return std::nullopt;
    }
    char bytes[256];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count == 0 || (count < 0 && errno != EINTR)) {
      return std::nullopt;
    }
    m_typed.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    end = m_typed.find('\n');
  }
  std::string answer = m_typed.substr(0, end);
  m_typed.erase(0, end + 1);
  return answer;
}

}  // namespace kelvarin
