// The log below an editor: what actions and checks have to say, to be copied and followed.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/log/log_model.h"

class QTableView;

namespace kelvarin {

class LogPanel : public QWidget {
  Q_OBJECT

 public:
  explicit LogPanel(QWidget* parent = nullptr);

  void append(const std::vector<LogEntry>& entries);
  LogModel& model() { return *m_model; }

 signals:
  // The user opened a line about an action.
  void actionWanted(const kelvarin::LogEntry& entry);

 private:
  void copy();
  void open(const QModelIndex& index);

  LogModel* m_model;
  QTableView* m_table;
};

}  // namespace kelvarin
