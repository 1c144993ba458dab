#include "library/runs/run_services.h"

#include <chrono>
#include <condition_variable>

#include "host/engine/messages.h"

namespace kelvarin {

void RunServices::log(LogLevel level, const QString& text, const ActionItem* action) {
  if (m_settings.log.function == nullptr) {
    return;
  }
  const QByteArray name = action == nullptr ? QByteArray() : action->name().toUtf8();
  const QByteArray line = text.toUtf8();
  const std::lock_guard lock(m_mutex);
  m_settings.log.function(m_settings.log.context, static_cast<std::int32_t>(level),
                          name.constData(), line.constData());
}

bool RunServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  std::unique_lock lock(m_diskMutex);
  if (!m_reported.contains(file)) {
    m_reported.insert(file);
    MainUI::addLog(LogLevel::error, engine_messages::diskFull(file, missingBytes));
  }
  if (!canRetry || m_waited >= m_settings.diskWaitSeconds) {
    return false;
  }
  ++m_waited;
  std::condition_variable_any never;
  (void)never.wait_for(lock, m_settings.stop, std::chrono::seconds(1), [] { return false; });
  return !m_settings.stop.stop_requested();
}

}  // namespace kelvarin
