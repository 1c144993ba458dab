// What the commit of an expression in a columnar dialog means for its field: a refused one is
// marked, and a dialog about its fault appears, once a text. F7 asks for both at any time.
//
// Used by the pages that have an ExpressionField. Nothing is marked while the user types.
// Threads: the user-interface thread.
#pragma once

#include <optional>

#include <QObject>
#include <QPointer>

#include "ui/language/formula_answer.h"

namespace kelvarin {

class ExpressionField;
class Interface_MathParserCheck;

class CommittedVerdict : public QObject {
  Q_OBJECT

 public:
  // F7 works everywhere in `page`.
  CommittedVerdict(ExpressionField& field, QWidget& page);

  // The next answer about this expression is the verdict on it.
  void expect(const QString& expression);
  // An empty expression is none, and no fault.
  bool isRefused(const FormulaAnswer& answer) const;

 signals:
  // F7: what is typed is to be committed, and the field to be asked anew.
  void checkWanted();
  // The user wants to see the fault, whose page may be hidden.
  void fieldWanted();

 private:
  void take(const FormulaAnswer& answer);
  void report(const FormulaAnswer& answer);
  void showFault(int position, int size);

  ExpressionField& m_field;
  QWidget& m_page;
  std::optional<QString> m_expected;
  QString m_reported;  // the expression whose fault was shown last
  QPointer<Interface_MathParserCheck> m_dialog;
};

}  // namespace kelvarin
