// The values of one debugged row by the names of its variables, of vectors those of one element.
//
// Used by the panel and the models of the step debugger.
#pragma once

#include <vector>

#include "actions/frame/row_observer.h"

namespace kelvarin {

// All of them, as the observer was shown them.
std::vector<VariableValue> variableValues(const ObservedRow& row);
// The element of each vector stands for the vector; those that have fewer are missing.
std::vector<VariableValue> valuesOfElement(const ObservedRow& row, int element);
// Of the longest vector; 0: there is none.
int elementCount(const ObservedRow& row);
// Bit by bit, so that null and NaN differ.
bool isSameValue(const ExpressionValue& a, const ExpressionValue& b);

}  // namespace kelvarin
