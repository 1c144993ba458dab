#include "host/testing/recording_host.h"

namespace kelvarin::testing {

std::vector<LogLine> RecordingHost::lines() const {
  const std::lock_guard lock(m_mutex);
  return m_lines;
}

Strings RecordingHost::log() const {
  Strings texts;
  for (const LogLine& line : lines()) {
    const char* head = line.level == LogLevel::error     ? "error: "
                       : line.level == LogLevel::warning ? "warning: "
                                                         : "info: ";
    texts.push_back(head + line.text);
  }
  return texts;
}

Strings RecordingHost::explanations() const {
  const std::lock_guard lock(m_mutex);
  return m_explanations;
}

void RecordingHost::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                                const LogDetails& details) {
  if (!details.explains) {
    log(level, text, action);
    return;
  }
  const std::lock_guard lock(m_mutex);
  m_explanations.push_back(text.toStdString());
}

void RecordingHost::clearLog() {
  const std::lock_guard lock(m_mutex);
  m_lines.clear();
}

Strings RecordingHost::fullDiskFiles() const {
  const std::lock_guard lock(m_mutex);
  return m_fullDiskFiles;
}

void RecordingHost::log(LogLevel level, const QString& text, const ActionItem* action) {
  const std::lock_guard lock(m_mutex);
  m_lines.push_back({level, text.toStdString(), action});
}

void RecordingHost::actionReported(const ActionItem&, const ActionReport& report) {
  m_report = report;
}

void RecordingHost::backendsChosen(const ActionItem&, const QStringList& labels) {
  m_backends.clear();
  for (const QString& label : labels) {
    m_backends.push_back(label.toStdString());
  }
}

bool RecordingHost::outOfDiskSpace(const QString& file, int, bool canRetry) {
  const std::lock_guard lock(m_mutex);
  m_fullDiskFiles.push_back(file.toStdString());
  return canRetry && m_diskRetries-- > 0;
}

void RecordingHost::openHelp(const QString& helpId, const QString&) {
  m_helpPages.push_back(helpId.toStdString());
}

}  // namespace kelvarin::testing
