// The input-variable table with its buttons: add, remove, move, add the columns that the
// expressions name, copy the input's column names.
//
// Used by the expression editors.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>

#include <QMap>
#include <QWidget>

#include "ui/panels/variables_model.h"

namespace kelvarin {

class VariablesPanel : public QWidget {
  Q_OBJECT

 public:
  // `expressions`: those of the editor, as they are now. The model outlives the panel.
  VariablesPanel(VariablesModel& model, std::function<QStringList()> expressions,
                 QWidget* parent = nullptr);
  ~VariablesPanel() override;

  // The columns of the input; where they are unknown, a note says why.
  void setInputColumns(const PinColumns& columns, bool isComing);
  // What is typed in a cell and not in the model yet, under one key for the cell; restore() passes
  // over other keys.
  QMap<QString, QString> uncommitted() const;
  void restore(const QMap<QString, QString>& texts);
  void commit();
  // Whether the expressions name columns that are no variables.
  void updateMissingColumns();

 signals:
  // A variable is wanted in the expression: a right click or Ctrl+Return.
  void insertWanted(int variable);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
