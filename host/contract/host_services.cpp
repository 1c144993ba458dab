#include "host/contract/host_services.h"

#include <atomic>

#include "host/contract/messages.h"

namespace kelvarin {

namespace {
std::atomic<HostServices*> installedServices{nullptr};
}

HostServices::~HostServices() = default;
void HostServices::backendsChosen(const ActionItem&, const QStringList&) {}
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

HostServices* installHostServices(HostServices* services) {
  return installedServices.exchange(services);
}

HostServices* hostServices() {
  return installedServices.load();
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

thread_local const ActionItem* CurrentAction::s_action = nullptr;

const ActionItem* CurrentAction::get() {
  return s_action;
}
const ActionItem*& CurrentAction::slot() {
  return s_action;
}

}  // namespace kelvarin
