// The lines of a log that the user wants to see: of a level or above, with a text in them.
//
// Used by: log_panel.cpp.
// Threads: the user-interface thread.
#pragma once

#include <QSortFilterProxyModel>

#include "gui/log/log_model.h"

namespace kelvarin {

class LogFilter : public QSortFilterProxyModel {
 public:
  // The model outlives the filter.
  explicit LogFilter(LogModel& model, QObject* parent = nullptr);

  // Lines that matter less are hidden; `information` hides none.
  void setLeastLevel(LogLevel level);
  // In the text or the action's name, upper and lower case alike.
  void setText(const QString& text);

  const LogEntry& entry(int row) const { return m_model.entry(mapToSource(index(row, 0)).row()); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  LogModel& m_model;
  LogLevel m_leastLevel = LogLevel::information;
  QString m_text;
};

}  // namespace kelvarin
