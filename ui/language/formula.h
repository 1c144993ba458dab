// An expression as its editor has it at one moment, with all that it may refer to: a snapshot that
// another thread can check and evaluate.
//
// Made by the editors; used by FormulaService and by the field in which the expression is typed.
#pragma once

#include <memory>
#include <vector>

#include <QStringList>

#include "expression/evaluator/compiled_output.h"
#include "expression/evaluator/expression_value.h"
#include "expression/evaluator/variables.h"
#include "host/contract/global_parameters.h"
#include "host/contract/pin_rows.h"

namespace kelvarin {

struct Formula {
  OutputVariable output;  // the expression is in it
  ResultUse use = ResultUse::column;
  EvaluationOptions options;
  std::vector<InputVariable> variables;
  GlobalParameters parameters;          // of the graph
  PinColumns columns;                   // of the action's first input pin
  std::shared_ptr<const PinRows> rows;  // the first ones of that pin; null: none are known
  // The row of the debugger, of each vector the element to evaluate with; empty: none.
  std::vector<VariableValue> current;
};

}  // namespace kelvarin
