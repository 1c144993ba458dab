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

void RecordingServices::log(LogLevel level, const QString& text, const ActionItem* action) {
  logDetailed(level, text, action, {});
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
  if (m_program != nullptr) {
    m_program->logDetailed(level, text, action, line.details);
  }
}

void RecordingServices::backendsChosen(const ActionItem& action, const QStringList& labels) {
  {
    const std::lock_guard lock(m_mutex);
    m_backends[&action] = labels;
  }
  if (m_program != nullptr) {
    m_program->backendsChosen(action, labels);
  }
}

void RecordingServices::actionReported(const ActionItem& action, const ActionReport& report) {
  {
    const std::lock_guard lock(m_mutex);
    m_reports[&action] = report;
  }
  if (m_program != nullptr) {
    m_program->actionReported(action, report);
  }
}

void RecordingServices::columnsNamed(const ActionItem& action, const QStringList& names) {
  {
    const std::lock_guard lock(m_mutex);
    m_namedColumns[&action] = names;
  }
  if (m_program != nullptr) {
    m_program->columnsNamed(action, names);
  }
}

bool RecordingServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  return m_program != nullptr && m_program->outOfDiskSpace(file, missingBytes, canRetry);
}

GlobalUserMode RecordingServices::userMode() {
  return m_program == nullptr ? HostServices::userMode() : m_program->userMode();
}

EditedGraph* RecordingServices::editedGraph() {
  return m_program == nullptr ? HostServices::editedGraph() : m_program->editedGraph();
}

void RecordingServices::documentWasModified() {
  if (m_program != nullptr) {
    m_program->documentWasModified();
  }
}

void RecordingServices::invalidate() {
  if (m_program != nullptr) {
    m_program->invalidate();
  }
}

bool RecordingServices::runBranch(EngineRunner& runner, ActionItem& action, int pin) {
  return m_program != nullptr && m_program->runBranch(runner, action, pin);
}

PinColumns RecordingServices::columnsOfInputPin(const ActionItem& action, int pin) {
  return m_program == nullptr ? PinColumns() : m_program->columnsOfInputPin(action, pin);
}

std::unique_ptr<RowsRequest> RecordingServices::requestRows(
    const ActionItem& action, int pin, bool isOutput, long long limit,
    std::shared_ptr<RowsReceiver> receiver) {
  return m_program == nullptr
             ? nullptr
             : m_program->requestRows(action, pin, isOutput, limit, std::move(receiver));
}

void RecordingServices::openHelp(const QString& helpId, const QString& anchor) {
  if (m_program != nullptr) {
    m_program->openHelp(helpId, anchor);
  }
}

}  // namespace kelvarin
