#include "host/engine/recording_services.h"

#include <utility>

namespace kelvarin {

std::vector<LogLine> RecordingServices::takeLog() {
  const std::lock_guard lock(m_mutex);
  return std::move(m_log);
}

QStringList RecordingServices::backendsOf(const ActionItem& action) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_backends.find(&action);
  return found == m_backends.end() ? QStringList() : found->second;
}

ActionReport RecordingServices::reportOf(const ActionItem& action) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_reports.find(&action);
  return found == m_reports.end() ? ActionReport() : found->second;
}

QStringList RecordingServices::columnsNamedBy(const ActionItem& action) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_namedColumns.find(&action);
  return found == m_namedColumns.end() ? QStringList() : found->second;
}

void RecordingServices::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                                    const LogDetails& details) {
  LogLine line{level, action == nullptr ? QString() : action->name(), text, details};
  if (action != nullptr && details.elementPosition.line == 0) {
    line.details.elementPosition = action->node().position();
  }
  {
    const std::lock_guard lock(m_mutex);
    m_log.push_back(line);
  }
  ForwardingServices::logDetailed(level, text, action, line.details);
}

void RecordingServices::backendsChosen(const ActionItem& action, const QStringList& labels) {
  {
    const std::lock_guard lock(m_mutex);
    m_backends[&action] = labels;
  }
  ForwardingServices::backendsChosen(action, labels);
}

void RecordingServices::actionReported(const ActionItem& action, const ActionReport& report) {
  {
    const std::lock_guard lock(m_mutex);
    m_reports[&action] = report;
  }
  ForwardingServices::actionReported(action, report);
}

void RecordingServices::columnsNamed(const ActionItem& action, const QStringList& names) {
  {
    const std::lock_guard lock(m_mutex);
    m_namedColumns[&action] = names;
  }
  ForwardingServices::columnsNamed(action, names);
}

}  // namespace kelvarin
