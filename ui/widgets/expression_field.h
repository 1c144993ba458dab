// The field in which an expression is typed, with what helps while typing: colours, bracket pairs,
// completion, call tips, and below it the verdict in words, the result's type and engine, and the
// values of the first rows.
//
// Used by the expression editors, the block filter, the naming of files and the condition of a
// breakpoint. Nothing in it changes an action; that is the editor's, at editingFinished().
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QWidget>

#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"

namespace kelvarin {

class KPlainTextEdit;

class ExpressionField : public QWidget {
  Q_OBJECT

 public:
  enum class Form {
    page,  // lines, their verdict and the values of the first rows
    line,  // one line among other controls; of the verdict only what is wrong, and no values
  };

  explicit ExpressionField(QWidget* parent = nullptr, Form form = Form::page);
  ~ExpressionField() override;

  KPlainTextEdit* editor() const;
  QString expression() const;
  // Not undone by the user, and no end of editing.
  void setExpression(const QString& expression);
  // What it may refer to; the expression in it is not looked at. Asks for a new verdict.
  void setFormula(const Formula& formula);
  // The row of the debugger in it, which parts under the pointer are evaluated with.
  void setCurrentRow(const std::vector<VariableValue>& values);
  const FormulaAnswer& answer() const;

  // Replaces the default expression "1", else puts the alias between blanks at the cursor.
  void insertVariable(const QString& alias);
  void insertText(const QString& text);
  // The whole text; one step of undo.
  void replaceExpression(const QString& expression);
  // The style of a field whose expression was refused, or the normal one.
  void setRefused(bool isRefused);
  // Selects a part and takes the focus.
  void showPart(qsizetype start, qsizetype size);
  // The same, and the focus stays where it is.
  void selectPart(qsizetype start, qsizetype size);
  // Makes a change that was proposed for the expression as it is.
  void apply(const QuickFix& fix);
  // Below the field; where a line is too narrow for it, its owner puts it into another layout.
  QWidget* verdict() const;
  // Further controls on the verdict's line, of what the values are about.
  void addBesideVerdict(QWidget* control);
  // Where there are never rows, the table of their values only takes height.
  void setValuesShown(bool isShown);
  // Whose earlier expressions are offered: those of this kind of action. The field adds what was
  // committed; without a key there is no history.
  void setHistoryKey(const QString& key);

 signals:
  void editingFinished();
  // Enter was pressed in a field of one line; its editing is finished then.
  void returnPressed();
  void answered(const kelvarin::FormulaAnswer& answer);
  // Completion or a quick fix names a column that is no variable yet.
  void columnWanted(const QString& column);
  void helpWanted(const QString& name);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
