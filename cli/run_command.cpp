// `kelvarin run`: runs a graph.
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_session.h"
#include "cli/run_report.h"

namespace kelvarin {

namespace {

void reportRun(const GraphArguments&, const RunResult& result, Console& console) {
  if (!console.isQuiet() && !result.actions.empty()) {
    console.write(rowTable(result));
  }
}

}  // namespace

void addRunCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<GraphArguments>();
  CLI::App* command = program.add_subcommand("run", "Run a graph");
  arguments->addTo(*command);
  command->footer("Example:\n  kelvarin run examples/flights/flights.kelvarin --set minDelay=60");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return workOnGraph(*arguments, runGraph, reportRun, jsonOf); };
  });
}

}  // namespace kelvarin
