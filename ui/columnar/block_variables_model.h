// The variables of a block filter: for each column of the file the names under which the
// expression sees its largest value, its smallest one and whether there are nulls, with the samples
// with which a check evaluates.
//
// Threads: the user-interface thread.
#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>
#include <QStringList>

#include "columnar/actions/block_filter.h"
#include "columnar/actions/table_summary.h"

namespace kelvarin {

class BlockVariablesModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column {
    kName,
    kKind,
    kMaximum,
    kMinimum,
    kHasNull,
    kMaximumSample,
    kMinimumSample,
    kColumnCount
  };

  explicit BlockVariablesModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  void setVariables(const std::vector<BlockVariable>& variables);
  const std::vector<BlockVariable>& variables() const { return m_variables; }
  // What the file has; null where it is not known.
  void setFile(const TableSummary* summary);
  // Names that the expression could use if their column were a variable: of all columns of the file
  // that are none yet.
  std::vector<InputVariable> offeredInputs() const;

  // Each reports edited(). A column gets the kind of variable that its type in the file asks for.
  int add(const QString& column);
  // The column of one of the offered names; false: there is none.
  bool addOffered(const QString& inputName);
  void remove(const std::vector<int>& rows);
  bool move(int row, int step);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void edited();

 private:
  void noteAllChanged();
  BlockVariable variableOf(const QString& column) const;
  QStringList choicesOf(int column) const;
  QString faultOf(const BlockVariable& variable) const;
  const TableSummary::Column* columnOfFile(const QString& name) const;

  std::vector<BlockVariable> m_variables;
  std::optional<std::vector<TableSummary::Column>> m_file;
};

}  // namespace kelvarin
