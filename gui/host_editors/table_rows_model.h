// The first rows of a table file, as the action reads them.
//
// Threads: the user-interface thread.
#pragma once

#include <QAbstractTableModel>

#include "gui/host_editors/table_look.h"

namespace kelvarin {

class TableRowsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setLook(TableLook look);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  TableLook m_look;
};

}  // namespace kelvarin
