// What a calculator and a vectorized one do differently at their first row: which variables the
// table on the second pin defines, which columns the outputs yield, and how rows are computed.
//
// Made by the action for one run, and used up in the order of its operations.
#pragma once

#include <memory>
#include <vector>

#include "actions/calculator/output_columns.h"
#include "actions/calculator/row_computation.h"
#include "base/result.h"
#include "expression/evaluator/variables.h"

namespace kelvarin {

struct TableVariables {
  std::vector<InputVariable> variables;
  int elementCount = 1;  // of each vector among them
};

class CalculatorPlan {
 public:
  virtual ~CalculatorPlan() = default;

  // The error is the text to log; it is empty where nothing remains to be said.
  virtual Result<TableVariables, QString> readTable() = 0;
  // The columns of `outputs` with their final names. The error is the text to log.
  virtual Result<std::vector<OutputVariable>, QString> columnsOf(
      const std::vector<OutputVariable>& outputs) = 0;
  // Points the columns of the output row, which are `columns` now, at the results of the compiled
  // outputs.
  virtual std::unique_ptr<RowComputation> connect(const OutputColumns& columns) = 0;
};

}  // namespace kelvarin
