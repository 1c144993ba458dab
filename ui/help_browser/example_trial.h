// The "Try it" line of the help browser: an expression that starts as an example and whose value
// appears below while it is edited.
//
// Threads: the user-interface thread; evaluated beside it.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "ui/language/formula_service.h"

namespace kelvarin {

class ExampleTrial : public QWidget {
  Q_OBJECT

 public:
  explicit ExampleTrial(QWidget* parent = nullptr);

  void setExample(const QString& expression);

 private:
  void evaluate();
  void show(const FormulaAnswer& answer);

  FormulaService m_service;
  quint64 m_asked = 0;  // the version of the latest question
  QLineEdit* m_expression;
  QLabel* m_value;
};

}  // namespace kelvarin
