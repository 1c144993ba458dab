// The log of a window: what actions, runs and checks have to say, to be filtered, copied and
// followed.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/log/log_model.h"

class QComboBox;
class QHBoxLayout;
class QTableView;

namespace kelvarin {

class LogFilter;
class SearchField;

class LogPanel : public QWidget {
  Q_OBJECT

 public:
  explicit LogPanel(QWidget* parent = nullptr);

  void append(const std::vector<LogEntry>& entries);
  LogModel& model() { return *m_model; }
  // Selects a line, by its row in the model; nothing where the filter hides it.
  void showLine(int row);

 signals:
  // The user opened a line about an action.
  void actionWanted(const kelvarin::LogEntry& entry);

 private:
  void makeTable();
  QHBoxLayout* newHead();
  void copy();
  void open(const QModelIndex& index);

  LogModel* m_model;
  LogFilter* m_filter;
  QTableView* m_table;
  QComboBox* m_level;
  SearchField* m_search;
};

}  // namespace kelvarin
