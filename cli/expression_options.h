// The attributes that expression actions share, set by their names with the option --opt.
//
// Used by `kelvarin eval` and the commands that compute over a table without a graph file.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <QStringList>

#include "base/result.h"
#include "expression/evaluator/variables.h"

namespace kelvarin {

// --opt.
void addExpressionOptions(CLI::App& command, std::vector<std::string>& options);

// Of the NAME=VALUE arguments of --opt. What an action's user ticks, the current time, is on where
// one of the expressions names it, unless an argument says otherwise. The error names what is wrong
// and what there is.
Result<EvaluationOptions, QString> expressionOptions(const std::vector<std::string>& arguments,
                                                     const QStringList& expressions);

}  // namespace kelvarin
