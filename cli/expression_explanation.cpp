#include "cli/expression_explanation.h"

#include "cli/messages.h"
#include "expression/errors/expression_mark.h"

namespace kelvarin {

void showMarked(const ExpressionError& error, const QString& expression, Console& console) {
  if (error.position >= 0) {
    const QString marked = markedExpression(expression, error);
    console.writeReason(LogLevel::information, program_messages::here(QString(marked).replace(
                                                   u'\n', QStringLiteral("\n  "))));
  }
}

QString hintAtExpression(const ExpressionError& error, const QString& expression,
                         const HintNames& names) {
  return error.kind == ExpressionError::Kind::dateFormatUnknown
             ? program_messages::giveDateFormat()
             : expressionHint(error, expression, names);
}

}  // namespace kelvarin
