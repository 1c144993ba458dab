#include "host/contract/host_services.h"

#include "host/contract/host_session.h"
#include "host/contract/messages.h"

namespace kelvarin {

HostServices::~HostServices() = default;
void HostServices::backendsChosen(const ActionItem&, const QStringList&) {}
void HostServices::actionReported(const ActionItem&, const ActionReport&) {}
void HostServices::columnsNamed(const ActionItem&, const QStringList&) {}
void HostServices::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                               const LogDetails&) {
  log(level, text, action);
}
bool HostServices::outOfDiskSpace(const QString&, int, bool) {
  return false;
}
GlobalUserMode HostServices::userMode() {
  return GlobalUserMode::expert;
}
EditedGraph* HostServices::editedGraph() {
  return nullptr;
}
void HostServices::documentWasModified() {}
void HostServices::invalidate() {}
bool HostServices::runBranch(EngineRunner&, ActionItem&, int) {
  return false;
}
void HostServices::openHelp(const QString& helpId, const QString&) {
  log(LogLevel::information, messages::helpPage(helpId), CurrentAction::get());
}

std::unique_ptr<RowsRequest> HostServices::requestRows(const ActionItem&, int, bool, long long,
                                                       std::shared_ptr<RowsReceiver>) {
  return nullptr;
}

PinColumns HostServices::columnsOfInputPin(const ActionItem&, int) {
  return {};
}

void HostServices::rowRejected(const ActionItem&, const RejectedRow&) {}

HostServices* hostServices() {
  const HostSession* session = HostSession::current();
  return session == nullptr ? nullptr : session->services();
}

PinColumns columnsOfInputPin(const ActionItem& action, int pin) {
  HostServices* services = hostServices();
  return services == nullptr ? PinColumns() : services->columnsOfInputPin(action, pin);
}

void logWithDetails(LogLevel level, const QString& text, const LogDetails& details) {
  if (HostServices* services = hostServices()) {
    services->logDetailed(level, text, CurrentAction::get(), details);
    return;
  }
  MainUI::addLog(level, text);
}

void logExplanation(const QString& text) {
  LogDetails details;
  details.explains = true;
  logWithDetails(LogLevel::information, text, details);
}

}  // namespace kelvarin
