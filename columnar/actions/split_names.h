// The names of the files that a table is split into.
//
// Used by ColumnarWrite.
// Errors: texts for the user; nothing logs.
#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/action_item.h"

namespace kelvarin {

// "_000", "_001", ...
QString segmentText(int segment);

// A name as it is written, cut at its expressions.
struct NamingText {
  QStringList literals;  // before, between and after the expressions
  QStringList expressions;

  static NamingText of(const QString& file);
  QString joined() const;
  // The name with its only expression replaced by `expression`. None where that would be read as
  // another expression, since a text in it begins or ends with a plus sign.
  std::optional<QString> withExpression(const QString& expression) const;
};

// A name with expressions: each "+expression+" with its quotes is replaced by the expression's
// value, in which `SplitVal` is the split value, a text.
class NamingExpressions {
 public:
  // The error is the expression and why it cannot be used.
  struct Error {
    QString expression;
    QString reason;
  };

  // `action` expands the text around the expressions.
  Status<Error> compile(const QString& file, const ActionItem& action);
  Result<QString, Error> name(const QString& splitValue);

 private:
  NamingText m_text;  // with expanded literals
  ExpressionEvaluator m_evaluator;
};

}  // namespace kelvarin
