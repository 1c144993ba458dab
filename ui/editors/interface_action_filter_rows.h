// The property editor of FilterRows.
//
// Threads: the user-interface thread.
#pragma once

#include "actions/filter_rows/filter_rows.h"
#include "ui/editors/expression_action_editor.h"

namespace kelvarin {

class Interface_actionFilterRows : public ExpressionActionEditor {
  Q_OBJECT

 public:
  Interface_actionFilterRows(QWidget* parent, FilterRows& action);

 protected:
  Formula formula() const override;
  void load() override;
  bool store() override;
  void commitExpression() override;
  void checkExpressions() override;
  void showVerdict(int index, const FormulaAnswer* failure) override;

 private:
  void askAboutSampling(const QString& expression);
  void truncate();
  void validate(ExpressionValidation::Occasion occasion);

  FilterRows& m_action;
  QString m_checkedExpression;
  bool m_mayAskAboutSampling = true;
  bool m_isExpressionDirty = false;
};

}  // namespace kelvarin
