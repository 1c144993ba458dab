// What the arguments of `kelvarin calc` ask for.
//
// Used by: calc_command.cpp, calc_run.cpp.
#pragma once

#include <string>
#include <vector>

#include <QStringList>

#include "base/result.h"
#include "cli/calc/named_expression.h"
#include "cli/gel/table_conversion.h"
#include "cli/source_options.h"
#include "expression/evaluator/variables.h"

namespace kelvarin {

// As they were typed.
struct CalcArguments {
  std::vector<std::string> positionals;
  std::string input;
  std::string output = kStandardStream;
  std::string inputKind;
  std::string outputKind;
  SourceOptions source;
  std::vector<std::string> filters;
  std::vector<std::string> settings;
  std::vector<std::string> dates;
  std::vector<std::string> options;
  std::string splitColumn;
  std::vector<std::string> storedTypes;
  std::string graph;  // to save; empty: none
  bool isOnlySaved = false;
  RunOptions run;
};

struct CalcRequest {
  TableConversion conversion;
  const TableKind* inputKind = nullptr;
  const TableKind* outputKind = nullptr;
  SourceOptions source;
  SinkOptions sink;
  std::vector<NamedExpression> outputs;
  QStringList filters;
  QStringList dates;  // columns that enter expressions as elapsed times
  std::vector<GraphParameter> parameters;
  EvaluationOptions options;
  QString graph;
  bool isOnlySaved = false;
  bool isInputGuessed = false;  // an argument that is no output
  QStringList existing;         // outputs that are names of files, too

  bool readsStandardInput() const { return conversion.input == kStandardStream; }
  bool hasExpressions() const { return !outputs.empty() || !filters.isEmpty(); }
  QStringList expressions() const {
    QStringList all = filters;
    for (const NamedExpression& output : outputs) {
      all += output.expression;
    }
    return all;
  }
};

// The error is one of usage.
Result<CalcRequest, QString> requestOf(const CalcArguments& arguments);

}  // namespace kelvarin
