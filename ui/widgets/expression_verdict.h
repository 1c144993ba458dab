// What is wrong with an expression, in words with links that mend it, or what its result is and
// which engine computes it.
//
// Used by ExpressionField.
// Threads: the user-interface thread.
#pragma once

#include "host/widgets/info_line.h"
#include "ui/language/formula_answer.h"

namespace kelvarin {

class ExpressionVerdict : public InfoLine {
  Q_OBJECT

 public:
  explicit ExpressionVerdict(QWidget* parent = nullptr);

  // Nothing about the result and its engine, and no height while nothing is wrong.
  void showFaultsOnly();
  void setAnswer(const FormulaAnswer& answer);
  // Chooses the only change, or shows a menu of several at the position.
  void chooseFix(const QPoint& onScreen);

 signals:
  void fixChosen(const kelvarin::QuickFix& fix);

 private:
  std::vector<QuickFix> m_fixes;
  bool m_isResultShown = true;
};

}  // namespace kelvarin
