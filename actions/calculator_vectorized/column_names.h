// What the new columns of a vectorized calculator are called: each output's name is an expression
// over the names of the current element's columns.
//
// In it `_n` is the text of the element's number and an alias the name of its column.
// Threads: any; one at a time in the whole process, the others wait.
// Errors: the text to log.
#pragma once

#include <functional>
#include <vector>

#include <QString>
#include <QStringList>

#include "actions/calculator_vectorized/vector_table.h"
#include "base/result.h"
#include "expression/evaluator/variables.h"
#include "expression/functions/function_context.h"
#include "host/contract/global_parameters.h"

namespace kelvarin {

struct NamingRules {
  EvaluationOptions options;
  const GlobalParameters* parameters = nullptr;   // may be null
  std::function<QString(const QString&)> expand;  // replaces graph parameters in column names
  QString dateFormatUnknown;                      // the text to log about dates without a format
  EvaluationBounds bounds = {};                   // for names that are shown before any run
  std::function<bool()> isStopped = {};           // asked for each element; empty: never
};

// Element by element, the outputs in their order. `nameExpressions` has one an output. The error is
// empty where it was stopped.
Result<QStringList, QString> nameColumns(const VectorTable& vectors,
                                         const QStringList& nameExpressions,
                                         const NamingRules& rules);

}  // namespace kelvarin
