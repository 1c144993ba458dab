// The value of the part of an expression that the pointer rests on or that is selected, in a tool
// tip.
//
// Used by ExpressionField.
// Threads: the user-interface thread; the value is computed by the FormulaService's.
#pragma once

#include <functional>

#include <QObject>
#include <QPoint>
#include <QTimer>

#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"

namespace kelvarin {

class ExpressionEditor;
class FormulaService;

class PartValueTip : public QObject {
  Q_OBJECT

 public:
  // `formula`: with the expression as it stands in the editor.
  PartValueTip(ExpressionEditor& editor, FormulaService& service, std::function<Formula()> formula,
               QWidget* owner);

  // Of what was selected by no user, no value is shown.
  void passOverSelection();

 private:
  void ask(qsizetype start, qsizetype size, const QPoint& onScreen);
  void askAboutSelection();
  void showAnswer(const PartAnswer& answer);

  ExpressionEditor& m_editor;
  FormulaService& m_service;
  std::function<Formula()> m_formula;
  QTimer m_rest;
  quint64 m_version = 0;  // of the latest question; 0: none is open
  QString m_expression;   // that was asked about
  QPoint m_onScreen;
};

// "price * quantity = 49.8 in row 0"
QString partValueText(const QString& expression, const PartAnswer& answer);

}  // namespace kelvarin
