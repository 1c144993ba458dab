#include "host/contract/main_ui.h"

#include <cstdio>
#include <random>

#include "host/contract/host_services.h"
#include "host/contract/host_session.h"
#include "host/contract/messages.h"

using kelvarin::hostServices;

void MainUI::addLog(LogLevel level, QString text) {
  if (kelvarin::HostServices* services = hostServices()) {
    services->log(level, text, kelvarin::CurrentAction::get());
    return;
  }
  const char* head = level == LogLevel::error     ? "error: "
                     : level == LogLevel::warning ? "warning: "
                                                  : "info: ";
  std::fprintf(stderr, "%s%s\n", head, text.toUtf8().constData());
}

GlobalUserMode MainUI::userMode() {
  kelvarin::HostServices* services = hostServices();
  return services == nullptr ? GlobalUserMode::expert : services->userMode();
}

kelvarin::EditedGraph* MainUI::editedGraph() {
  kelvarin::HostServices* services = hostServices();
  return services == nullptr ? nullptr : services->editedGraph();
}

void MainUI::documentWasModified() {
  if (kelvarin::HostServices* services = hostServices()) {
    services->documentWasModified();
  }
}

void MainUI::invalidate() {
  if (kelvarin::HostServices* services = hostServices()) {
    services->invalidate();
  }
}

quint64 MainUI::getNearUniqueRandomID() {
  std::random_device device;
  return (static_cast<quint64>(device()) << 32) | device();
}

bool MainUI::isWebOn() {
  return false;
}

QString MainUI::kelvarinID() {
  return QStringLiteral("kelvarin " KELVARIN_VERSION);
}

bool MainUI::displayOutOfDiskSpace(QString file, int missingBytes, bool canRetry) {
  kelvarin::HostServices* services = hostServices();
  return services != nullptr && services->outOfDiskSpace(file, missingBytes, canRetry);
}

void openHelp(QString helpId, QString anchor) {
  if (kelvarin::HostServices* services = hostServices()) {
    services->openHelp(helpId, anchor);
    return;
  }
  MainUI::addLog(LogLevel::information, kelvarin::messages::helpPage(helpId));
}
