// The table on pin 1 of a calculator as its editor sees it: the variables or vectors that it
// defines, and the columns that a vectorized calculator will make of them.
//
// Threads: the user-interface thread; names are computed beside it.
#pragma once

#include <QObject>

#include "actions/calculator_vectorized/column_names.h"
#include "ui/language/bounded_worker.h"
#include "ui/language/formula.h"
#include "ui/language/input_rows.h"

namespace kelvarin {

class PinTable : public QObject {
  Q_OBJECT

 public:
  // Longer tables are cut here, and the rest is not known.
  static constexpr long long kMaxRows = 10'000;

  PinTable(const ActionItem& action, bool isVectorized, QObject* parent);

  bool isBusy() const { return m_rows.isBusy(); }
  void refresh() { m_rows.refresh(); }
  // Something is linked to the pin, and its columns are known.
  bool isKnown() const { return m_rows.columns().isKnown; }
  bool isCut() const;
  QString whyUnknown() const { return m_rows.columns().whyUnknown; }
  // The error is what a run would log.
  const Result<VectorTable, QString>& table() const { return m_table; }
  int longestVector() const;
  // The variables with the columns that they have for an element.
  std::vector<InputVariable> variablesOf(int element) const;

  // Computes the names anew, of each output by its formula; columnsNamed() brings them. What does
  // not pass the check of expressions that are being typed, or reads files, has no names.
  void nameColumns(const std::vector<Formula>& names);

 signals:
  void changed();
  void columnsNamed(const kelvarin::Result<QStringList, QString>& names);

 private:
  Result<VectorTable, QString> readTable() const;

  bool m_isVectorized;
  InputRows m_rows;
  Result<VectorTable, QString> m_table;
  BoundedWorker m_worker;
};

}  // namespace kelvarin
