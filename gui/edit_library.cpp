// The entry of the library for `kelvarin edit`.
#include <QApplication>
#include <QTimer>

#include "base/export.h"
#include "gui/edit/edit_window.h"
#include "gui/window_session.h"
#include "host/contract/host_session.h"
#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

int showEditWindow(const WindowRequest& request, const ActionCatalogue& catalogue) {
  EditedGraph graph(catalogue);
  GraphCommands commands(graph);
  EditServices services(graph, catalogue);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  Theme theme;
  EditWindow window(commands, services, session, theme, request.graph, request.action,
                    overridesOf(request));
  if (request.closeAfterMilliseconds >= 0) {
    QObject::connect(&window, &EditWindow::graphShown, &window, [&] {
      QTimer::singleShot(request.closeAfterMilliseconds, &window, &QWidget::close);
    });
  }
  window.show();
  window.offerRecovery();
  return QApplication::exec();
}

}  // namespace

}  // namespace kelvarin

extern "C" KELVARIN_CORE int kelvarinEdit(int argc, char** argv,
                                          const kelvarin::WindowRequest& request) {
  return kelvarin::runWithWindows(argc, argv, request, kelvarin::showEditWindow);
}
