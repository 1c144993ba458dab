#include "gui/window_session.h"

#include <cstdio>
#include <optional>
#include <utility>

#include <unistd.h>

#include <QApplication>
#include <QFileInfo>

#include "gui/host_editors/host_editors.h"
#include "gui/messages.h"
#include "host/files/file_hints.h"
#include "host/tables/table_actions.h"
#include "host/widgets/translation.h"
#include "host/widgets/widget_screen.h"

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

// While it lives, windows can be opened.
class WindowSession {
 public:
  WindowSession(int& argc, char** argv) : m_outer(qInstallMessageHandler(endWithoutScreen)) {
    m_application.emplace(argc, argv);
    qInstallMessageHandler(m_outer);
    QApplication::setOrganizationName(QStringLiteral("kelvarin"));
    QApplication::setApplicationName(QStringLiteral("kelvarin"));
    m_translation.emplace();
    installScreen(&m_screen);
  }
  ~WindowSession() { installScreen(nullptr); }
  WindowSession(const WindowSession&) = delete;
  WindowSession& operator=(const WindowSession&) = delete;

 private:
  QtMessageHandler m_outer;
  std::optional<QApplication> m_application;
  std::optional<Translation> m_translation;
  WidgetScreen m_screen;
};

// Says why no window can be opened, where that is so already.
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

}  // namespace

int runWithWindows(int argc, char** argv, const WindowRequest& request,
                   int (*show)(const WindowRequest& request, const ActionCatalogue& catalogue)) {
  if (!canOpenWindows(request)) {
    return 1;
  }
  const WindowSession session(argc, argv);
  addHostEditors(EditorRegistry::instance());
  auto plugin = PluginLibrary::load(request.plugin);
  if (!plugin) {
    report(plugin.error());
    return 1;
  }
  const ActionCatalogue catalogue(std::move(*plugin), makeTableActions());
  return show(request, catalogue);
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
