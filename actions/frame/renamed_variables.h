// How the variables and expressions of an action follow a column that is called otherwise.
//
// Used by: the column_user.h side of expression actions.
#pragma once

#include <vector>

#include "expression/evaluator/variables.h"

namespace kelvarin {

struct RenamedVariables {
  std::vector<InputVariable> variables;
  // Expressions name the variable as the column, so they must follow.
  bool mustExpressionsFollow = false;
};

// A variable that is called like its column keeps its name as its label where the new one could not
// stand in an expression, or is the name of another variable.
RenamedVariables renamedVariables(std::vector<InputVariable> variables, const QString& oldName,
                                  const QString& newName);
bool isVariable(const std::vector<InputVariable>& variables, const QString& name);
// The expression with a variable called otherwise; functions of its name stay.
QString withRenamedVariable(const QString& expression, const QString& oldName,
                            const QString& newName);

}  // namespace kelvarin
