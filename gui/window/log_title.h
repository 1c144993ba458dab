// The title of the log's panel: how many errors and warnings it has, so that they are noticed while
// another panel lies over it.
//
// Used by: host_window.cpp.
// Threads: the user-interface thread.
#pragma once

#include <QObject>

class QDockWidget;

namespace kelvarin {

class LogModel;

class LogTitle : public QObject {
  Q_OBJECT

 public:
  // Both outlive it.
  LogTitle(QDockWidget& dock, const LogModel& model);

 private:
  void addRows(int first, int last);
  void startAgain();
  void show();

  QDockWidget& m_dock;
  const LogModel& m_model;
  int m_errors = 0;
  int m_warnings = 0;
};

}  // namespace kelvarin
