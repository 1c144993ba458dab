// Checks committed expressions beside the user-interface thread, one after the other, and shows the
// first failure in a dialog.
//
// Used by the expression editors. What fails and what passes is reported; styles and flags are the
// editor's.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QObject>
#include <QPointer>

#include "ui/language/formula_service.h"

class QWidget;

namespace kelvarin {

class Interface_MathParserCheck;

class ExpressionValidation : public QObject {
  Q_OBJECT

 public:
  enum class Occasion {
    commit,  // the dialog comes once for a text
    asked    // it comes in any case
  };

  // `editor`: the widget above which the dialog appears.
  explicit ExpressionValidation(QWidget& editor);

  // Forgets those that wait. Each formula is reported under its index.
  void check(std::vector<Formula> formulas, Occasion occasion);
  bool isBusy() const { return m_next < m_formulas.size(); }
  // The user has typed into another field since the question.
  bool hasTypedElsewhere() const { return m_hasTypedElsewhere; }

  void showFailure(const QString& expression, const FormulaAnswer& answer);

 signals:
  void passed(int index);
  // The check goes on with the next one after it.
  void failed(int index, const kelvarin::FormulaAnswer& answer);
  // All were reported.
  void finished();
  // Of the dialog.
  void goThere(int position, int size);
  void nameChosen(const QString& name, int position, int size);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void askNext();
  void take(const FormulaAnswer& answer);

  QWidget& m_editor;
  FormulaService m_service;
  std::vector<Formula> m_formulas;
  std::size_t m_next = 0;  // the one that is being checked
  quint64 m_askedVersion = 0;
  Occasion m_occasion = Occasion::commit;
  bool m_hasTypedElsewhere = false;
  QString m_shownText;  // about which the latest dialog was
  QPointer<Interface_MathParserCheck> m_dialog;
};

}  // namespace kelvarin
