// Evaluates what the help shows, with the settings of its examples.
#pragma once

#include <string>

#include "expression/evaluator/expression_evaluator.h"
#include "expression/help/help_entry.h"
#include "host/contract/one_row.h"

namespace kelvarin {

inline const std::string kRefused = "refused: ";
inline const char* const kNoNativeCode = "refused: native code is not available";

inline std::string plainText(const ExpressionValue& value) {
  const bool isText = value.type == ExpressionValue::Type::text;
  const QString text = isText ? value.text : shortestText(value.number);
  return text.isNull() ? "null" : text.toStdString();
}

// Its text; "refused: " or "failed: " and the reason.
inline std::string evaluateExample(const std::string& example, BackendKind kind,
                                   int castToET2 = 0) {
  EvaluationOptions options;
  options.time.seed = 1;
  options.time.castToET2 = castToET2;
  options.time.addNow = options.time.addNowS = true;
  options.time.dateFormat = QString::fromLatin1(kExampleSettings.dateFormat);
  options.time.referenceTime = QString::fromLatin1(kExampleSettings.referenceTime);
  options.time.elapsedTimeUnit = kExampleSettings.elapsedTimeUnit;
  ExpressionEvaluator evaluator;
  evaluator.expressions.configure(options, {}, nullptr, false);
  evaluator.expressions.requireBackend(kind);
  OutputVariable output;
  output.name = QStringLiteral("example");
  output.expression = QString::fromStdString(example);
  evaluator.expressions.prepareDateContext({output.expression});
  if (const auto compiled = evaluator.expressions.compile(output, ResultUse::anyValue); !compiled) {
    return kRefused + compiled.error().message.toStdString();
  }
  evaluator.start();
  evaluator.rows.startRow();
  if (evaluator.rows.evaluate(0) != RowOutcome::ok) {
    return "failed: " + evaluator.rows.lastFailure().error.message.toStdString();
  }
  return plainText(evaluator.rows.value(0));
}

}  // namespace kelvarin
