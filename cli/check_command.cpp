// `kelvarin check`: finds the faults of a graph without running it.
#include <algorithm>
#include <cstdio>

#include "cli/column_flow.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_session.h"
#include "cli/messages.h"
#include "cli/printable_text.h"
#include "cli/reports/evaluation_plan.h"
#include "host/reports/run_json.h"

namespace kelvarin {

namespace {

void reportCheck(const GraphArguments& arguments, const RunResult& result, Console&) {
  if (result.isOk() && !arguments.isJson && !arguments.options.isQuiet) {
    const bool isWarned =
        std::any_of(result.log.begin(), result.log.end(),
                    [](const LogLine& line) { return line.level == LogLevel::warning; });
    const QString graph = QString::fromStdString(arguments.graph);
    const QString verdict = isWarned ? program_messages::checkFoundNoError(graph)
                                     : program_messages::checkFoundNothing(graph);
    std::puts(printable(verdict).c_str());
    std::fputs(printable(columnFlow(result)).c_str(), stdout);
    std::puts(program_messages::checkRestsOnSamples());
  }
  if (arguments.isExplained && !arguments.isJson) {
    std::fputs(printable(evaluationPlan(result)).c_str(), stdout);
  }
}

}  // namespace

void addCheckCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<GraphArguments>();
  CLI::App* command = program.add_subcommand(
      "check", "Check a graph, its files, columns and expressions, without running it");
  arguments->addTo(*command);
  command->add_flag("--explain", arguments->isExplained,
                    "show how a run evaluates each expression, and why not faster");
  command->footer(
      "Examples:\n  kelvarin check examples/flights/flights.kelvarin\n"
      "  kelvarin check examples/flights/flights.kelvarin --explain");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return workOnGraph(*arguments, checkGraph, reportCheck, jsonOfCheck); };
  });
}

}  // namespace kelvarin
