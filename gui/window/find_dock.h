// The panel of find and replace as a part of the window: comes with Ctrl+F, goes with Esc, and the
// focus returns to where it was.
//
// Used by: host_window.h.
// Threads: the user-interface thread.
#pragma once

#include <QDockWidget>
#include <QPointer>

#include "gui/find/find_panel.h"

namespace kelvarin {

class FindDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit FindDock(GraphCommands& commands, QWidget* parent = nullptr);

  FindPanel& panel() { return *m_panel; }
  void open(FindQuery::Task task);
  // Opens the panel where there is nothing to step through.
  void step(int direction);

 signals:
  // The focus was in the panel, and what had it before is gone.
  void focusLost();

 private:
  void closePanel();

  FindPanel* m_panel;
  QPointer<QWidget> m_focusBefore;
};

}  // namespace kelvarin
