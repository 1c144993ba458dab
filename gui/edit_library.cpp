// The entry of the library with the windows: `kelvarin edit`.
#include <cstdio>
#include <optional>

#include <unistd.h>

#include <QApplication>
#include <QFileInfo>
#include <QTimer>

#include "base/export.h"
#include "gui/edit/edit_window.h"
#include "gui/messages.h"
#include "host/contract/edit_request.h"
#include "host/files/file_hints.h"
#include "host/tables/table_actions.h"
#include "host/widgets/theme.h"
#include "host/widgets/translation.h"
#include "host/widgets/widget_screen.h"

namespace kelvarin {

namespace {

int fail(const QString& text) {
  std::fprintf(stderr, "error: %s\n", qUtf8Printable(text));
  return 1;
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
    fail(gui_messages::screenNotReached(reason.isEmpty() ? text : reason));
    _exit(1);
  }
  if (type == QtWarningMsg && !text.startsWith(QLatin1String("QStandardPaths"))) {
    reason = text;
  }
}

// While it lives, windows can be opened.
class Windows {
 public:
  Windows(int& argc, char** argv) : m_outer(qInstallMessageHandler(endWithoutScreen)) {
    m_application.emplace(argc, argv);
    qInstallMessageHandler(m_outer);
    QApplication::setOrganizationName(QStringLiteral("kelvarin"));
    QApplication::setApplicationName(QStringLiteral("kelvarin"));
    m_translation.emplace();
    installScreen(&m_screen);
  }
  ~Windows() { installScreen(nullptr); }
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

 private:
  QtMessageHandler m_outer;
  std::optional<QApplication> m_application;
  std::optional<Translation> m_translation;
  WidgetScreen m_screen;
};

std::vector<ParameterOverride> overridesOf(const EditRequest& request) {
  std::vector<ParameterOverride> overrides;
  overrides.reserve(request.settings.size());
  for (const auto& [name, value] : request.settings) {
    overrides.push_back({name, value});
  }
  return overrides;
}

int showWindow(const EditRequest& request, const ActionCatalogue& catalogue) {
  EditedGraph graph(catalogue);
  GraphCommands commands(graph);
  EditServices services(graph, catalogue);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  GraphFiles files(request.graph, overridesOf(request), catalogue, session);
  Theme theme;
  EditWindow window(commands, services, files, catalogue, theme, request.action);
  if (request.closeAfterMilliseconds >= 0) {
    QObject::connect(&window, &EditWindow::graphShown, &window, [&] {
      QTimer::singleShot(request.closeAfterMilliseconds, &window, &QWidget::close);
    });
  }
  window.show();
  return QApplication::exec();
}

}  // namespace

int edit(int argc, char** argv, const EditRequest& request) {
  if (!hasScreen()) {
    return fail(gui_messages::noScreen());
  }
  if (!QFileInfo::exists(request.graph)) {
    return fail(gui_messages::noGraph(request.graph, missingFileHint(request.graph)));
  }
  const Windows windows(argc, argv);
  auto plugin = PluginLibrary::load(request.plugin);
  if (!plugin) {
    return fail(plugin.error());
  }
  const ActionCatalogue catalogue(std::move(*plugin), makeTableActions());
  return showWindow(request, catalogue);
}

}  // namespace kelvarin

extern "C" KELVARIN_CORE int kelvarinEdit(int argc, char** argv,
                                          const kelvarin::EditRequest& request) {
  return kelvarin::edit(argc, argv, request);
}
