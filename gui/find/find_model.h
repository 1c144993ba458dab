// What a search found, a row for each text, as it grows; and what a replacement makes of each.
//
// Used by: find_panel.h. Threads: the user-interface thread, a few milliseconds at a time.
#pragma once

#include <memory>
#include <vector>

#include <QAbstractTableModel>
#include <QTimer>

#include "gui/find/find_job.h"

namespace kelvarin {

class FindModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { action, where, text, now, columnCountOfFound };
  // Of `text`: where the match begins and how long it is, in what is shown.
  enum Role { matchBegin = Qt::UserRole, matchLength };
  static constexpr int kMaxRows = 10'000;

  explicit FindModel(GraphCommands& commands, QObject* parent = nullptr);
  ~FindModel() override;

  SearchedTexts& texts() { return m_texts; }
  // Searches anew; nothing is done for a query that is there already.
  void setQuery(const FindQuery& query);
  const FindQuery& query() const { return m_query; }
  // While nobody looks, changes of the graph do not search it again.
  void setActive(bool isActive);
  bool isSearching() const { return m_work.isActive(); }

  const FoundText& found(int row) const { return m_found[static_cast<std::size_t>(row)]; }
  // Changes that are chosen.
  int chosenCount() const;
  // Sources whose file must have the new name of a column.
  QStringList sourcesToRename() const;
  // Each as one step of undo.
  ReplacedTexts replaceChosen();
  QList<ActionId> renameColumns();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  // The search has come to its end.
  void ended();
  void chosenChanged();

 private:
  void start();
  void work();
  void finishJob();
  void append(std::vector<FoundText> found);
  QString whereText(const FoundText& found) const;
  QVariant shown(const FoundText& found, int column) const;

  GraphCommands& m_commands;
  SearchedTexts m_texts;
  FindQuery m_query;
  bool m_isActive = true;
  bool m_isOutdated = false;  // the graph has changed since, and nobody looked
  QTimer m_work;
  QTimer m_rest;
  std::unique_ptr<FindJob> m_job;  // under way, or done for the graph as it is; else null
  std::vector<FoundText> m_found;
};

}  // namespace kelvarin
