// `kelvarin run`: runs a graph.
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_session.h"
#include "cli/messages.h"
#include "cli/preview.h"
#include "cli/run_report.h"
#include "host/contract/claimed_names.h"
#include "host/contract/main_ui.h"
#include "host/reports/run_json.h"

namespace kelvarin {

namespace {

void reportRun(const GraphArguments&, const RunResult& result, Console& console) {
  if (!console.isQuiet() && !result.actions.empty()) {
    console.write(rowTable(result));
  }
}

// The rows of a sink and the JSON object would mix.
const GraphAction* sinkOnStandardOutput(const Graph& graph) {
  for (const GraphAction& action : graph.actions) {
    const auto* user = dynamic_cast<const FileUser*>(action.item.get());
    if (user != nullptr && !action.isDisabled) {
      for (const UsedFile& file : user->usedFiles()) {
        if (file.use == FileUse::writes && isStandardOutput(file.path)) {
          return &action;
        }
      }
    }
  }
  return nullptr;
}

RunResult runBesideJson(Graph& graph, RunRecord& record, const ExecutionOptions& options) {
  const GraphAction* sink = sinkOnStandardOutput(graph);
  if (sink == nullptr) {
    ExecutionOptions detailed = options;
    detailed.reportsActions = true;
    detailed.countsValues = true;
    return runGraph(graph, record, detailed);
  }
  const QString text = program_messages::rowsBesideJson(sink->name);
  MainUI::addLog(LogLevel::error, text);
  RunResult result;
  result.log.push_back({LogLevel::error, sink->name, text, {}});
  return result;
}

}  // namespace

void addRunCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<GraphArguments>();
  CLI::App* command = program.add_subcommand("run", "Run a graph");
  arguments->addTo(*command);
  arguments->options.reports.addTo(*command);
  command
      ->add_option("--to", arguments->lastAction,
                   "run this action and what feeds it, and open nothing else")
      ->type_name("ACTION");
  auto preview = std::make_shared<Preview>();
  preview->addTo(*command);
  command->get_option("--preview")->excludes("--to")->excludes("--json");
  command->footer(
      "Examples:\n  kelvarin run examples/flights/flights.kelvarin --set minDelay=60\n"
      "  kelvarin run examples/flights/flights.kelvarin --to 'late?' --json\n"
      "  kelvarin run examples/flights/flights.kelvarin --preview 'late?' -n 5");
  command->callback([arguments, preview, &chosen] {
    chosen = [arguments, preview] {
      if (!preview->pin.empty()) {
        return showPreview(*arguments, *preview);
      }
      return workOnGraph(*arguments, arguments->isJson ? runBesideJson : runGraph, reportRun,
                         jsonOf);
    };
  });
}

}  // namespace kelvarin
