// The dialog about an expression that failed its check: the text, the position in the expression, a
// picture that explains the mistake, and what to do.
//
// It is not modal. Its owner decides when it is deleted.
// Threads: the user-interface thread.
#pragma once

#include <QDialog>

#include "ui/error_dialog/expression_report.h"

class QGridLayout;

namespace kelvarin {

class Interface_MathParserCheck : public QDialog {
  Q_OBJECT

 public:
  explicit Interface_MathParserCheck(const ExpressionReport& report, QWidget* parent = nullptr);

  // The report as a text, for a mail or a ticket.
  QString plainText() const;

 signals:
  // The user wants to see the fault in the field of the expression.
  void goThere(int position, int size);
  // The name that the user meant; the dialog closes.
  void nameChosen(const QString& name);

 private:
  void addText(QGridLayout& grid);
  void addExpression(QGridLayout& grid);
  void addAdvice(QGridLayout& grid);
  void addPicture(QGridLayout& grid);
  QWidget* makeButtons();
  QString markedFault() const;
  void fitToScreen(const QWidget& content, int buttonsHeight);

  const ExpressionReport m_report;
};

}  // namespace kelvarin
