// One expression, compiled by one back-end and bound to the variables of one evaluator.
//
// Threads: one.  Errors: evaluate() answers false and error() says why; nothing throws.
#pragma once

#include <memory>
#include <string_view>

#include "base/null_number.h"
#include "base/result.h"
#include "expression/backends/backend_kind.h"
#include "expression/errors/expression_error.h"

namespace kelvarin {

struct EvaluatedValue {
  enum class Type : unsigned char { number, boolean, text, nullText };

  Type type = Type::number;
  double number = kNullNumber;  // 1 or 0 for a boolean
  std::string_view text;        // UTF-8, until the next evaluation or row

  bool isText() const { return type == Type::text || type == Type::nullText; }
};

class NumberExpression;

class CompiledExpression {
 public:
  virtual ~CompiledExpression() = default;

  // This expression when its back-end knows numbers only, else null.
  virtual NumberExpression* asNumberExpression() { return nullptr; }

  virtual BackendKind kind() const = 0;
  virtual bool evaluate(EvaluatedValue& value) = 0;
  const ExpressionError& error() const { return m_error; }

 protected:
  ExpressionError m_error;
};

// An expression of the native or the Fast back-end, with a short way to its number.
class NumberExpression : public CompiledExpression {
 public:
  virtual bool evaluateNumber(double& number) = 0;

  NumberExpression* asNumberExpression() final { return this; }
  bool evaluate(EvaluatedValue& value) final {
    value.type = EvaluatedValue::Type::number;
    return evaluateNumber(value.number);
  }
};

using CompileResult = Result<std::unique_ptr<CompiledExpression>, ExpressionError>;

}  // namespace kelvarin
