// A window of the graphical host with all that it works on, as one run of the program has it.
//
// Used by the tests of the window, here and in gui/tests.
#pragma once

#include <gtest/gtest.h>
#include <QSignalSpy>
#include <QTest>

#include "gui/canvas/canvas_view.h"
#include "gui/window/host_window.h"
#include "host/contract/host_session.h"
#include "host/tables/table_actions.h"
#include "host/widgets/theme.h"

namespace kelvarin::testing {

// Of the host's own actions.
inline const ActionCatalogue& hostCatalogue() {
  static const ActionCatalogue catalogue(nullptr, makeTableActions());
  return catalogue;
}

struct HostProgram {
  explicit HostProgram(const ActionCatalogue& catalogue = hostCatalogue())
      : graph(catalogue), services(graph, catalogue) {
    window.show();
    window.activateWindow();
  }

  // Opens the file and waits until it is shown.
  void open(const QString& file) {
    const QSignalSpy shown(&window, &HostWindow::graphShown);
    window.open(file);
    ASSERT_TRUE(QTest::qWaitFor([&shown] { return !shown.isEmpty(); }));
  }
  void select(const QString& action) {
    GraphSelection selection;
    selection.actions = {graph.idOf(action)};
    window.canvas().setSelection(selection);
    QCoreApplication::processEvents();
  }

  EditedGraph graph;
  EditServices services;
  HostSession session{&services};
  const HostSession::Scope scope{&session};
  GraphCommands commands{graph};
  Theme theme;
  HostWindow window{commands, services, theme};
};

}  // namespace kelvarin::testing
