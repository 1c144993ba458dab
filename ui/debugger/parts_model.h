// The parts of the debugged expression as a tree, with their values in the row that is shown.
//
// Used by DebuggerPanel.
#pragma once

#include <vector>

#include <QAbstractItemModel>

#include "ui/language/part_evaluation.h"

namespace kelvarin {

class PartsModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column { partColumn, valueColumn, noteColumn, columnTotal };

  using QAbstractItemModel::QAbstractItemModel;

  // True: the parts are others than before. Else they stay open and chosen in views.
  bool setValues(PartValues values);
  void clear() { (void)setValues({}); }
  const PartValues& values() const { return m_values; }
  bool isEmpty() const { return m_values.tree.size() == 0; }
  // Where a missing value arises; in the order of evaluation.
  std::vector<QModelIndex> origins() const;
  static std::size_t partOf(const QModelIndex& index) {
    return static_cast<std::size_t>(index.internalId());
  }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVariant valueData(const PartValue& part, int role) const;
  QString noteOf(const PartValue& part) const;

  PartValues m_values;
  std::vector<int> m_rows;  // of each part among those of its parent
};

}  // namespace kelvarin
