// The vectors of a vectorized calculator as a table: alias, length and columns.
//
// Shown by VectorsPanel.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "expression/evaluator/variables.h"

namespace kelvarin {

class VectorsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kAlias, kLength, kColumns, kColumnCount };

  using QAbstractTableModel::QAbstractTableModel;

  void setVectors(std::vector<InputVariable> vectors);
  const InputVariable& at(int row) const { return m_vectors[static_cast<std::size_t>(row)]; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<InputVariable> m_vectors;
};

}  // namespace kelvarin
