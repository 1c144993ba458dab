// Values of expressions and of their variables, with the types they have in the engine.
#pragma once

#include <string_view>

#include <QString>

#include "base/null_number.h"
#include "expression/backends/compiled_expression.h"

namespace kelvarin {

struct ExpressionValue {
  enum class Type { number, boolean, text };
  Type type = Type::number;
  double number = kNullNumber;  // 1 or 0 for a boolean
  QString text;                 // null for the null text

  bool isNull() const { return type == Type::text ? text.isNull() : isNullNumber(number); }

  static ExpressionValue ofNumber(double number) { return {Type::number, number, {}}; }
  static ExpressionValue nullText() { return {Type::text, kNullNumber, {}}; }
  static ExpressionValue ofText(std::string_view utf8);
};

// Copies the text, which an evaluated value only refers to.
ExpressionValue valueOf(const EvaluatedValue& value);

// A variable as a step debugger shows it, the same for all rows of a run.
struct ShownVariable {
  QString name;
  int element = -1;  // of a vector; -1 for every other variable
  QString column;    // that it is read from; empty for `_n`, `_now` and `_nowS`
  bool isText = false;
};

// A variable of one row.
struct VariableValue {
  QString name;
  int element = -1;  // of a vector; -1 for every other variable
  QString column;    // that it was read from; empty for `_n`, `_now` and `_nowS`
  ExpressionValue value;
};

}  // namespace kelvarin
