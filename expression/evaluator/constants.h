// The constants that one evaluator offers to its expressions.
#pragma once

#include <vector>

#include "expression/backends/expression_scope.h"
#include "expression/dates/date_context.h"
#include "host/contract/global_parameters.h"

namespace kelvarin {

// The constant table, then the graph's parameters whose names an expression can hold: a number
// where the text is one.
std::vector<NamedConstant> constantsOf(const GlobalParameters* parameters);

// The current time, or one that no other run has.
bool differsByRun(const QString& constant);

// `_now` and `_nowS` as the parameters of `dates` ask for them, taken once.
bool isCurrentTime(const NamedConstant& constant);
void setCurrentTime(std::vector<NamedConstant>& constants, const DateContext& dates);

}  // namespace kelvarin
