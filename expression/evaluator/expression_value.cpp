#include "expression/evaluator/expression_value.h"

namespace kelvarin {

ExpressionValue ExpressionValue::ofText(std::string_view utf8) {
  const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  return {Type::text, kNullNumber, text.isNull() ? QStringLiteral("") : text};
}

ExpressionValue valueOf(const EvaluatedValue& value) {
  switch (value.type) {
    case EvaluatedValue::Type::number:
      return ExpressionValue::ofNumber(value.number);
    case EvaluatedValue::Type::boolean:
      return {ExpressionValue::Type::boolean, value.number, {}};
    case EvaluatedValue::Type::nullText:
      return ExpressionValue::nullText();
    case EvaluatedValue::Type::text:
      break;
  }
  return ExpressionValue::ofText(value.text);
}

}  // namespace kelvarin
