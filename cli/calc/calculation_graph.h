// The actions that carry out a calculation, between the one that reads the table and the one that
// writes it.
//
// Used by: calc_command.cpp.
#pragma once

#include <vector>

#include "cli/calc/calculation.h"
#include "cli/gel/table_conversion.h"

namespace kelvarin {

enum class ExpressionForm {
  asTyped,  // positions are those of what was typed
  plain     // to be read
};

// The calculators in their order, then the filters.
std::vector<ConversionStep> stepsOf(const Calculation& calculation, ExpressionForm form);

}  // namespace kelvarin
