// The lines of the log as a table: level, action, time, text. The oldest ones go when there are too
// many.
//
// Threads: the user-interface thread.
#pragma once

#include <deque>

#include <QAbstractTableModel>

#include "gui/services/log_entry.h"

namespace kelvarin {

class LogModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { level, action, time, text, columnCountOfLog };
  static constexpr int kMaxLines = 10'000;

  using QAbstractTableModel::QAbstractTableModel;

  void append(const std::vector<LogEntry>& entries);
  void clear();
  const LogEntry& entry(int row) const { return m_entries[static_cast<std::size_t>(row)]; }
  // For the clipboard: a line a row, as the command line shows it.
  QString asText(const QModelIndexList& rows) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::deque<LogEntry> m_entries;
};

}  // namespace kelvarin
