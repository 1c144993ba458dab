// What a user defines for an expression action: its input variables, its outputs and how they are
// evaluated.
//
// Read from and written to XML by actions/frame; bound and compiled by ExpressionEvaluator.
#pragma once

#include <QString>
#include <QStringList>

#include "base/null_number.h"
#include "expression/dates/time_parameters.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

struct InputVariable {
  QStringList columns;  // the last one is read, but of a vector the one of the current element
  QString label;        // the name in expressions; empty: the last column's name
  QString label2;
  bool isNumber = true;
  MetaTypeColumn meta = MetaTypeColumn::text;
  // The sample with which a check evaluates: a number when isNumber is set, else a text.
  double number = 0.0;
  QString text = QStringLiteral("");
  bool isVector = false;  // has a column for each element of the action's vectors

  QString name() const { return label.isEmpty() && !columns.isEmpty() ? columns.last() : label; }
};

// How a back-end sees a variable. A date enters as an elapsed time, a number to every back-end; its
// meta wins over isNumber.
enum class VariableKind { number, text, date };

inline VariableKind kindOf(const InputVariable& variable) {
  if (variable.meta == MetaTypeColumn::date) {
    return VariableKind::date;
  }
  return variable.isNumber ? VariableKind::number : VariableKind::text;
}

struct OutputVariable {
  QString name;
  QString expression;
  MetaTypeColumn meta = MetaTypeColumn::number;
  bool isInput = false;
  bool update = false;  // replaces the input column of this name
  QString notes;
};

// How a number becomes a key, and a null key a number. 0, 1 or 2 each.
struct KeyCast {
  int outOfRange = 2;   // 0 the key 0, 1 the null key, 2 stops the run
  int fraction = 2;     // 0 cuts it off, 1 the null key, 2 stops the run
  int nullOnInput = 0;  // a null key read from a column: 0 null, 1 zero, 2 stops the run
};

struct EvaluationOptions {
  bool addN = true;    // offers the row number as `_n`
  bool useJIT = true;  // allows native code
  bool abortWhenError = true;
  KeyCast keyCast;
  TimeParameters time;
};

}  // namespace kelvarin
