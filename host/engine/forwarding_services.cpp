#include "host/engine/forwarding_services.h"

#include <utility>

namespace kelvarin {

void ForwardingServices::log(LogLevel level, const QString& text, const ActionItem* action) {
  logDetailed(level, text, action, {});
}

void ForwardingServices::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                                     const LogDetails& details) {
  if (m_program != nullptr) {
    m_program->logDetailed(level, text, action, details);
  }
}

void ForwardingServices::backendsChosen(const ActionItem& action, const QStringList& labels) {
  if (m_program != nullptr) {
    m_program->backendsChosen(action, labels);
  }
}

void ForwardingServices::actionReported(const ActionItem& action, const ActionReport& report) {
  if (m_program != nullptr) {
    m_program->actionReported(action, report);
  }
}

void ForwardingServices::columnsNamed(const ActionItem& action, const QStringList& names) {
  if (m_program != nullptr) {
    m_program->columnsNamed(action, names);
  }
}

bool ForwardingServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  return m_program != nullptr && m_program->outOfDiskSpace(file, missingBytes, canRetry);
}

GlobalUserMode ForwardingServices::userMode() {
  return m_program == nullptr ? HostServices::userMode() : m_program->userMode();
}

EditedGraph* ForwardingServices::editedGraph() {
  return m_program == nullptr ? HostServices::editedGraph() : m_program->editedGraph();
}

void ForwardingServices::documentWasModified() {
  if (m_program != nullptr) {
    m_program->documentWasModified();
  }
}

void ForwardingServices::invalidate() {
  if (m_program != nullptr) {
    m_program->invalidate();
  }
}

bool ForwardingServices::runBranch(EngineRunner& runner, ActionItem& action, int pin) {
  return m_program != nullptr && m_program->runBranch(runner, action, pin);
}

PinColumns ForwardingServices::columnsOfInputPin(const ActionItem& action, int pin) {
  return m_program == nullptr ? PinColumns() : m_program->columnsOfInputPin(action, pin);
}

std::unique_ptr<RowsRequest> ForwardingServices::requestRows(
    const ActionItem& action, int pin, bool isOutput, long long limit,
    std::shared_ptr<RowsReceiver> receiver) {
  return m_program == nullptr
             ? nullptr
             : m_program->requestRows(action, pin, isOutput, limit, std::move(receiver));
}

void ForwardingServices::rowRejected(const ActionItem& action, const RejectedRow& row) {
  if (m_program != nullptr) {
    m_program->rowRejected(action, row);
  }
}

void ForwardingServices::openHelp(const QString& helpId, const QString& anchor) {
  if (m_program != nullptr) {
    m_program->openHelp(helpId, anchor);
  }
}

}  // namespace kelvarin
