// The entry of the library for `kelvarin gui`.
#include <QApplication>
#include <QTimer>

#include "base/export.h"
#include "gui/window/host_window.h"
#include "gui/window_session.h"
#include "host/contract/host_session.h"
#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

int showHostWindow(const WindowRequest& request, const ActionCatalogue& catalogue) {
  EditedGraph graph(catalogue);
  EditServices services(graph, catalogue);
  HostSession session(&services);
  const HostSession::Scope scope(&session);
  GraphCommands commands(graph);
  Theme theme;
  HostWindow window(commands, services, theme, overridesOf(request));
  if (request.closeAfterMilliseconds >= 0) {
    const auto closeLater = [&window, &request] {
      QTimer::singleShot(request.closeAfterMilliseconds, &window, &QWidget::close);
    };
    if (request.graph.isEmpty()) {
      closeLater();
    } else {
      QObject::connect(&window, &HostWindow::graphShown, &window, closeLater);
    }
  }
  window.show();
  window.offerRecovery();
  if (!request.graph.isEmpty()) {
    window.open(request.graph);
  }
  return QApplication::exec();
}

}  // namespace

}  // namespace kelvarin

extern "C" KELVARIN_CORE int kelvarinGui(int argc, char** argv,
                                         const kelvarin::WindowRequest& request) {
  return kelvarin::runWithWindows(argc, argv, request, kelvarin::showHostWindow);
}
