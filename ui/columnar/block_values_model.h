// The first blocks of a file as a block filter sees them: the values that its variables get from
// their statistics, and whether each block is read.
//
// The variables are those that the expression names; all where it names none, so that one can look
// before one writes.
// Used below the expression of the filter.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "columnar/actions/block_filter_trial.h"

namespace kelvarin {

class BlockValuesModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setTrial(const BlockFilterTrial& trial);
  void setExpression(const QString& expression);
  // The expression is wrong or not tried; the values stay in sight.
  void forgetVerdicts();
  void clear() { setTrial({}); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  enum FixedColumn { kRows, kVerdict, kFixedColumns };  // before the variables

  void chooseVariables();
  int alignmentOf(std::size_t variable) const;
  QVariant fixedData(const BlockFilterTrial::Block& block, int column, int role) const;

  BlockFilterTrial m_trial;
  QString m_expression;
  bool m_hasVerdicts = false;
  std::vector<std::size_t> m_shown;  // the indices of the variables
};

}  // namespace kelvarin
