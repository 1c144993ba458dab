// The first rows of an expression's input, with the values of the variables that it uses and its
// result.
//
// Used below an ExpressionField. The model is for tests without widgets, too.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractTableModel>
#include <QStringList>
#include <QWidget>

#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"
#include "ui/language/shown_value.h"

class QLabel;
class QTableView;

namespace kelvarin {

class ValueStripModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setAnswer(const Formula& formula, const FormulaAnswer& answer);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Cell {
    ShownValue value;
    bool isFailure = false;
  };

  static Cell resultOf(long long row, const FormulaAnswer& answer);

  int alignmentOf(std::size_t column) const;

  QStringList m_names;  // the variables, then the result
  std::vector<long long> m_rowNumbers;
  std::vector<std::vector<Cell>> m_rows;
};

class ValueStrip : public QWidget {
  Q_OBJECT

 public:
  explicit ValueStrip(QWidget* parent = nullptr);

  void setAnswer(const Formula& formula, const FormulaAnswer& answer);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();

  ValueStripModel* m_model;
  QTableView* m_table;
  QLabel* m_note;
};

// Why there are no values, and the result with the samples where there is one.
QString noteWithoutRows(const Formula& formula, const FormulaAnswer& answer);

}  // namespace kelvarin
