// Evaluates one expression over given variable values, one row after the other, as an action would.
//
// Used by `kelvarin eval`.  Threads: one.  Errors: ExpressionFault; nothing is logged.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {

struct ExpressionRequest {
  QString expression;
  std::vector<InputVariable> variables;  // their samples are the values of every row
  EvaluationOptions options;
  std::optional<MetaTypeColumn> meta;  // without it the result's own type decides
  std::optional<BackendKind> backend;  // without it they are tried in their order
};

// Why there is no result: the text that an editor's check shows, and where.
struct ExpressionFault {
  QString text;
  QString token;
  int position = -1;
  ExpressionError error = {};  // of the back-end, if it is one
};

struct ExpressionResult {
  MetaTypeColumn type = MetaTypeColumn::number;
  bool isNull = false;
  double number = 0.0;  // of a number or a key
  QString text;
};

class ExpressionRun {
 public:
  explicit ExpressionRun(const ExpressionRequest& request);

  // Compiles. To be called once, before next().
  Status<ExpressionFault> start();
  // The next row's result.
  Result<ExpressionResult, ExpressionFault> next();

  BackendKind backend() const { return m_evaluator.backend(0); }
  // What the user should know beside the results.
  QStringList warnings() const;
  // What to do about them; empty where the warnings say it.
  QString advice() const { return m_advice; }

 private:
  void setVariables();
  ExpressionResult currentResult();
  ExpressionResult resultOfMeta();
  ExpressionFault faultOfRow() const;

  const ExpressionRequest& m_request;
  GlobalParameters m_parameters;
  OutputVariable m_output;
  ExpressionEvaluator m_evaluator;
  unsigned char* m_text = nullptr;  // the bytes of a text output's result
  QStringList m_warnings;
  QString m_advice;
};

}  // namespace kelvarin
