// The answer to the question whether an expression is right: what an editor, `kelvarin check` and
// `kelvarin eval` show.
#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "expression/errors/expression_error.h"
#include "expression/evaluator/engine_choice.h"
#include "expression/evaluator/expression_value.h"

namespace kelvarin {

struct ExpressionCheck {
  enum class Kind { fine, warning, error };

  Kind kind = Kind::fine;
  QString text;           // to show; empty when the expression does what was asked
  ExpressionError error;  // what the text is about: its kind, the token and its position
  QStringList warnings;   // what else the user should know

  // None when the expression did not compile.
  std::optional<EngineChoice> engine;
  // With the variables' samples; none when there is no result.
  std::optional<ExpressionValue> value;

  bool isCompiled() const { return engine.has_value(); }
  // Replaces the warnings.
  void setWarnings(const QStringList& texts);

  static ExpressionCheck failure(const ExpressionError& error);
  // About the action's variables and options rather than the expression.
  static ExpressionCheck failure(const QString& text);
  static ExpressionCheck unknownDateFormat();
};

}  // namespace kelvarin
