// The actions that carry out a calculation, between the one that reads the table and the one that
// writes it.
//
// Used by: calc_command.cpp.
#pragma once

#include <vector>

#include "cli/calc/calculation.h"
#include "cli/gel/table_conversion.h"

namespace kelvarin {

// The calculators in their order, then the filters.
std::vector<ConversionStep> stepsOf(const Calculation& calculation);

}  // namespace kelvarin
