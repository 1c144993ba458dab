// A breakpoint's condition, evaluated for the rows of a debug run by an evaluator of its own.
//
// Made and used by DebugSession on the engine's thread. The fastest engine that takes the condition
// evaluates it.
// Errors: texts to show.
#pragma once

#include <memory>
#include <vector>

#include "actions/frame/row_observer.h"
#include "base/result.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {

// What conditions need from the debugged action, apart from its rows.
struct ConditionSettings {
  EvaluationOptions options;  // graph parameters replaced
  GlobalParameters parameters;
};

class BreakpointCondition {
 public:
  // `settings` outlives it. Of vectors it sees this element.
  BreakpointCondition(QString expression, int element, const ConditionSettings& settings);

  Result<bool, QString> holdsAt(const ObservedRow& row);

 private:
  // A variable or a result that the condition names.
  struct Source {
    bool isResult = false;
    std::size_t index = 0;  // among the row's variables or results
  };

  // At the first row, whose values have the types of all.
  Status<QString> compile(const ObservedRow& row);
  void addSource(const Source& source, const QString& name, bool isText);
  static const ExpressionValue* valueAt(const Source& source, const ObservedRow& row);

  QString m_expression;
  int m_element;
  const ConditionSettings& m_settings;
  bool m_isCompiled = false;
  QString m_fault;  // why it cannot be compiled
  std::vector<Source> m_sources;
  std::vector<InputVariable> m_variables;  // one a source
  ExpressionEvaluator m_evaluator;
};

}  // namespace kelvarin
