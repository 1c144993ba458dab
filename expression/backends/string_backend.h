// Expressions of numbers and texts, interpreted by muParserX.
//
// All expressions of one evaluator share the library's value objects of the variables; load() fills
// those that some expression uses, once a row.
// Errors: results; the library's exceptions do not leave string_backend.cpp.
#pragma once

#include <memory>

#include "expression/backends/compiled_expression.h"
#include "expression/backends/expression_scope.h"

namespace kelvarin {

class StringBackend {
 public:
  StringBackend();
  ~StringBackend();

  // `expression` has no line breaks (withoutLineBreaks()). What it compiles must not outlive this
  // object.
  CompileResult compile(const QString& expression, const ExpressionScope& scope);
  // Copies the variables' current values.
  void load(const VariableStore& variables);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace kelvarin
