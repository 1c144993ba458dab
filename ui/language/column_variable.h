// The input variable that a column becomes when an expression names it.
//
// Used by completion and quick fixes, which insert its name, and by the editors, which add it.
#pragma once

#include <vector>

#include "expression/evaluator/variables.h"
#include "host/contract/pin_columns.h"

namespace kelvarin {

// With a label where the column's name cannot stand in an expression or is taken.
InputVariable variableForColumn(const PinColumns::Column& column,
                                const std::vector<InputVariable>& existing);

}  // namespace kelvarin
