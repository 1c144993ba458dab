#include "ui/error_dialog/expression_report.h"

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

ExpressionReport reportOf(const QString& expression, const FormulaAnswer& answer) {
  ExpressionReport report;
  report.text = answer.check.text;
  report.expression = expression;
  report.position = static_cast<int>(answer.faultStart);
  report.size = static_cast<int>(answer.faultSize);
  for (const QuickFix& fix : answer.fixes) {
    const bool isAtFault = fix.start == answer.faultStart && fix.size == answer.faultSize;
    if (isAtFault && isVariableName(fix.replacement)) {
      report.nearestNames += fix.replacement;
    }
  }
  report.nearestNames.removeDuplicates();
  // The text is the library's message with the token and its position below it.
  report.advice = answer.check.text.startsWith(answer.message) ? QString() : answer.message;
  return report;
}

}  // namespace kelvarin
