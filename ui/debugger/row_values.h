// The values of one debugged row by the names of its variables, of vectors those of one element.
//
// Used by the panel and the models of the step debugger.
#pragma once

#include <vector>

#include "actions/frame/row_observer.h"

namespace kelvarin {

// Why a result is not what its expression should yield.
struct ResultFault {
  QString text;          // empty: there is none
  bool hasValue = true;  // false: the row ended the run before there was one
};

// One row as its tables show it.
struct RowValues {
  std::vector<VariableValue> variables;
  std::vector<VariableValue> results;
  std::vector<ResultFault> faults;  // one a result
};

// Of vectors those of one element; -1: the row has none.
RowValues valuesToShow(const ObservedRow& row, int element);

// Of the longest vector; 0: there is none.
int elementCount(const ObservedRow& row);
// Bit by bit, so that null and NaN differ.
bool isSameValue(const ExpressionValue& a, const ExpressionValue& b);

}  // namespace kelvarin
