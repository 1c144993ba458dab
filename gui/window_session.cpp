#include "gui/window_session.h"

#include <cstdio>

#include <unistd.h>

#include <QFileInfo>

#include "gui/messages.h"
#include "host/files/file_hints.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

void report(const QString& text) {
  std::fprintf(stderr, "error: %s\n", qUtf8Printable(text));
}

bool hasScreen() {
  for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
    if (!qEnvironmentVariableIsEmpty(name)) {
      return true;
    }
  }
  return false;
}

// Qt ends the process where it cannot reach the screen; what it says before that is the reason.
void endWithoutScreen(QtMsgType type, const QMessageLogContext&, const QString& text) {
  static QString reason;
  if (type == QtFatalMsg) {
    report(gui_messages::screenNotReached(reason.isEmpty() ? text : reason));
    _exit(1);
  }
  if (type == QtWarningMsg && !text.startsWith(QLatin1String("QStandardPaths"))) {
    reason = text;
  }
}

}  // namespace

WindowSession::WindowSession(int& argc, char** argv)
    : m_outer(qInstallMessageHandler(endWithoutScreen)) {
  m_application.emplace(argc, argv);
  qInstallMessageHandler(m_outer);
  QApplication::setOrganizationName(QStringLiteral("kelvarin"));
  QApplication::setApplicationName(QStringLiteral("kelvarin"));
  m_translation.emplace();
  installScreen(&m_screen);
}

WindowSession::~WindowSession() {
  installScreen(nullptr);
}

bool canOpenWindows(const WindowRequest& request) {
  if (!hasScreen()) {
    report(gui_messages::noScreen());
    return false;
  }
  if (!request.graph.isEmpty() && !QFileInfo::exists(request.graph)) {
    report(gui_messages::noGraph(request.graph, missingFileHint(request.graph)));
    return false;
  }
  return true;
}

std::unique_ptr<ActionCatalogue> loadCatalogue(const WindowRequest& request) {
  auto plugin = PluginLibrary::load(request.plugin);
  if (!plugin) {
    report(plugin.error());
    return nullptr;
  }
  return std::make_unique<ActionCatalogue>(std::move(*plugin), makeTableActions());
}

std::vector<ParameterOverride> overridesOf(const WindowRequest& request) {
  std::vector<ParameterOverride> overrides;
  overrides.reserve(request.settings.size());
  for (const auto& [name, value] : request.settings) {
    overrides.push_back({name, value});
  }
  return overrides;
}

}  // namespace kelvarin
