// Carries out what `kelvarin calc` was asked for: a look at the columns, the graph that the
// expressions stand for, and its run.
//
// Used by: calc_command.cpp.
// Threads: one.
// Errors: on the console.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "cli/calc/calc_log.h"
#include "cli/calc/calc_request.h"
#include "cli/calc/calculation.h"
#include "cli/calc/calculation_graph.h"
#include "cli/calc/repeated_input.h"

namespace kelvarin {

class CalcRun {
 public:
  // Both outlive the run.
  CalcRun(const CalcRequest& request, Console& console);

  ExitStatus run();

 private:
  // Each returns whether to go on.
  ExitStatus plan();
  ExitStatus bind(const std::vector<PinColumns::Column>& columns);
  ExitStatus save();

  ExitStatus work();
  void report(const ExpressionFault& fault);
  void explainArguments(ExitStatus status);
  // Of files with these names, or those of the conversion.
  QString source(const QString& file = {}) const;
  ConversionGraph graph(ExpressionForm form, const QString& input = {},
                        const QString& output = {}) const;
  QString pathInGraph(const std::string& path) const;

  const CalcRequest& m_request;
  TableConversion m_conversion;  // with the file that standard input is
  Console& m_console;
  GlobalParameters m_parameters;
  std::optional<Calculation> m_calculation;  // where there are expressions
  CalcLog m_log;
  std::unique_ptr<ActionCatalogue> m_catalogue;
  std::optional<RepeatedInput> m_standardInput;  // where it is read twice
};

}  // namespace kelvarin
