// The fields of one output beside its expression: name, type, and whether it replaces a column. A
// vectorized calculator names its columns by an expression.
//
// Used by Interface_actionMathParser. It changes nothing itself: it reports what the user wants.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QWidget>

#include "expression/evaluator/variables.h"
#include "ui/language/formula.h"

class QBoxLayout;
class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace kelvarin {

class ExpressionField;

class OutputFields : public QWidget {
  Q_OBJECT

 public:
  OutputFields(bool hasNameExpression, QWidget* parent);

  // Reports nothing of the type and of what it replaces.
  void showOutput(const OutputVariable& output);
  QString name() const;
  void setName(const QString& name);
  // What the name expression may refer to.
  void setNameFormula(const Formula& formula);
  // Its text is selected.
  void editName();

 signals:
  // While it is typed.
  void nameEdited();
  void nameFinished();
  void typeChosen(MetaTypeColumn meta);
  void updateChosen(bool isUpdate);
  void helpWanted(const QString& name);

 private:
  QWidget* makeName();
  void makeNameLine(QBoxLayout& layout);
  void makeNameExpression(QBoxLayout& layout);
  QWidget* makeType();

  const bool m_hasNameExpression;
  QLineEdit* m_name = nullptr;                  // null where it is an expression
  ExpressionField* m_nameExpression = nullptr;  // null where it is none
  std::vector<QRadioButton*> m_types;
  QCheckBox* m_update;
};

}  // namespace kelvarin
