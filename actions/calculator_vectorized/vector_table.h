// The table of vectors on the second pin of a vectorized calculator: each row names one element,
// and consecutive rows of one alias are one vector.
//
// Errors: the text to log.
#pragma once

#include <vector>

#include <QString>

#include "actions/calculator/variable_table.h"
#include "base/result.h"
#include "expression/evaluator/variables.h"
#include "host/contract/action_item.h"

namespace kelvarin {

// A variable of one column is a scalar: the same for every element.
struct VectorTable {
  std::vector<InputVariable> variables;
  int elementCount = 1;
};

inline constexpr int kMinVectorTableColumns = 2;

// Of rows that an editor has.
Result<VectorTable, QString> vectorTableOf(const std::vector<VariableTableRow>& rows);
// Pulls every row of the pin. The error is that of readDefinitions().
Result<VectorTable, QString> readVectorTable(ActionItem& action, int pin);

}  // namespace kelvarin
