// The dialog about an expression that failed its check: the text, the place in the expression, a
// picture that explains the mistake, and what to do.
//
// It is not modal.  Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QDialog>
#include <QStringList>

namespace kelvarin {

struct ExpressionReport {
  QString text;        // of the error, as it is prescribed; may be empty
  QString expression;  // may be empty
  int position = -1;   // 0-based, of the fault in the expression; -1: unknown
  int size = 0;
  QStringList nearestNames;
  QString advice;  // what to do, in one sentence; may be empty
};

class Interface_MathParserCheck : public QDialog {
  Q_OBJECT

 public:
  explicit Interface_MathParserCheck(const ExpressionReport& report, QWidget* parent = nullptr);
  ~Interface_MathParserCheck() override;

 signals:
  void goThere(int position, int size);
  void nameChosen(const QString& name);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
