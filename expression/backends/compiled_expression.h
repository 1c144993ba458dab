// One expression, compiled by one back-end and bound to the variables of one evaluator.
//
// Errors: evaluate() answers false and error() says why; nothing throws.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include <QString>

#include "base/null_number.h"
#include "base/result.h"
#include "expression/backends/text_arguments.h"
#include "expression/errors/backend_kind.h"
#include "expression/errors/expression_error.h"

namespace kelvarin {

struct EvaluatedValue {
  enum class Type : unsigned char { number, boolean, text, nullText };

  Type type = Type::number;
  double number = kNullNumber;  // 1 or 0 for a boolean
  std::string_view text;        // UTF-8, until the next evaluation or row

  bool isText() const { return type == Type::text || type == Type::nullText; }
};

// A variable that an expression assigned to, and what it has become for that expression.
struct AssignedValue {
  QString name;
  EvaluatedValue value;
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
  // Of all evaluations so far.
  virtual TextArguments textArguments() const { return {}; }
  // By the last evaluation; no other expression sees them.
  virtual std::vector<AssignedValue> assignedValues() const { return {}; }

 protected:
  ExpressionError m_error;
};

// The shortest way to the number of an expression: one call through a pointer.
struct NumberCall {
  bool (*function)(void* expression, double* number) = nullptr;
  void* expression = nullptr;

  // False where the expression failed; its error() says why.
  bool operator()(double* number) const { return function(expression, number); }
};

// The way to the numbers of an expression for many rows at once, the same bit for bit. It depends
// on variables alone and does not fail.
struct ColumnsCall {
  void (*function)(const void* expression, const double* const* columns, std::size_t rowCount,
                   double* numbers) = nullptr;
  const void* expression = nullptr;
  std::span<const std::size_t> elements;  // of the variables that it uses
  bool isCheap = false;                   // a few instructions a row

  // columns[element] points at the numbers of that variable.
  void operator()(const double* const* columns, std::size_t rowCount, double* numbers) const {
    function(expression, columns, rowCount, numbers);
  }
};

// An expression of the native or the Fast back-end.
class NumberExpression : public CompiledExpression {
 public:
  virtual NumberCall numberCall() = 0;
  // Empty where there is no such way.
  virtual ColumnsCall columnsCall() const { return {}; }

  NumberExpression* asNumberExpression() final { return this; }
  bool evaluate(EvaluatedValue& value) final {
    value.type = EvaluatedValue::Type::number;
    return numberCall()(&value.number);
  }
};

using CompileResult = Result<std::unique_ptr<CompiledExpression>, ExpressionError>;

}  // namespace kelvarin
