// The columns of the file that a reading action reads: which are ticked, in which order they come,
// and what the file says about each.
//
// The order of the rows of this model is that of the columns that are read. A ticked column that is
// not in the file stays, and is marked.
// Threads: the user-interface thread.
#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>
#include <QStringList>

#include "columnar/actions/table_summary.h"

namespace kelvarin {

class ColumnsToReadModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kName, kType, kSize, kSet, kColumnCount };

  explicit ColumnsToReadModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  // The action's list; columns that were only ticked here are forgotten.
  void setListed(const QStringList& names);
  QStringList listed() const;
  // What the file has; null where it is not known.
  void setFile(const TableSummary* summary);
  // Otherwise the boxes cannot be ticked: the list is not in use.
  void setTickable(bool isTickable);

  // Each reports edited().
  void tick(const std::vector<int>& rows, bool isTicked);
  // By -1 or 1; false at the end of the list.
  bool move(int row, int step);
  // Ticks the column of this name, and adds it where there is none. Its row.
  int add(const QString& name);

  // Of the ticked columns that the file has; nothing where sizes are unknown.
  std::optional<std::uint64_t> tickedBytes() const;
  int tickedCount() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void edited();

 private:
  struct Row {
    QString name;
    bool isTicked = false;
    bool isInFile = false;
    TableSummary::Column column;
  };

  QVariant textOf(const Row& row, int column) const;
  QString faultOf(const Row& row) const;
  int rowOf(const QString& name) const;

  std::vector<Row> m_rows;
  bool m_isFileKnown = false;
  bool m_areSizesKnown = false;
  bool m_isTickable = true;
};

}  // namespace kelvarin
