#include "cli/graph_session.h"

#include <cstdio>

#include "cli/last_resort.h"
#include "cli/name_value.h"
#include "cli/program_services.h"
#include "host/contract/nearest_names.h"
#include "host/engine/graph_links.h"
#include "host/engine/graph_reader.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

using Faults = std::vector<LogLine>;

struct LoadedGraph {
  std::unique_ptr<ActionCatalogue> catalogue;
  Graph graph;
};

LogLine faultLine(const QString& text, XMLNode::Position position = {}) {
  LogLine line{LogLevel::error, {}, text, {}};
  line.details.elementPosition = position;
  return line;
}

RunResult resultOfFaults(Faults faults) {
  RunResult result;
  result.state = GlobalParameters::RunningState::failed;
  result.log = std::move(faults);
  return result;
}

Status<QString> keepBranchOf(const QString& lastAction, Graph& graph) {
  const int index = graph.indexOf(lastAction);
  if (index < 0) {
    QStringList names;
    for (const GraphAction& action : graph.actions) {
      names += action.name;
    }
    const QString text = engine_messages::absentAction(lastAction, nearestNames(lastAction, names));
    return Failure{GraphError{graph.file, {}, text}.text()};
  }
  graph.keepOnly(GraphLinks(graph).withUpstream({index}));
  return Done{};
}

// The error has a line for every fault found.
Result<LoadedGraph, Faults> loadGraph(const GraphArguments& arguments) {
  auto catalogue = loadCatalogue(arguments.options.plugin);
  if (!catalogue) {
    return Failure{Faults{faultLine(catalogue.error())}};
  }
  const auto settings = splitNameValues("--set", arguments.settings);
  if (!settings) {
    return Failure{Faults{faultLine(settings.error())}};
  }
  std::vector<ParameterOverride> overrides;
  for (const NameValue& setting : *settings) {
    overrides.push_back({setting.name, setting.value});
  }
  auto graph = readGraph(QString::fromStdString(arguments.graph), **catalogue, overrides);
  if (!graph) {
    Faults faults;
    for (const GraphError& error : graph.error()) {
      faults.push_back(faultLine(error.text(), error.position));
    }
    return Failure{std::move(faults)};
  }
  if (arguments.lastAction) {
    const auto kept = keepBranchOf(QString::fromStdString(*arguments.lastAction), *graph);
    if (!kept) {
      return Failure{Faults{faultLine(kept.error())}};
    }
  }
  if (arguments.prepare) {
    if (const auto prepared = arguments.prepare(*graph); !prepared) {
      return Failure{Faults{faultLine(prepared.error())}};
    }
  }
  return LoadedGraph{std::move(*catalogue), std::move(*graph)};
}

RunResult workOnLoadedGraph(const GraphArguments& arguments, GraphWork work, Console& console) {
  auto loaded = loadGraph(arguments);
  if (!loaded) {
    for (const LogLine& fault : loaded.error()) {
      console.writeLog(fault.level, fault.text);
    }
    return resultOfFaults(loaded.error());
  }
  return workWithReports(loaded->graph, work, arguments.options, console);
}

// Where an exception ends the work, too, there is a result to report.
RunResult guardedWork(const GraphArguments& arguments, GraphWork work, Console& console) {
  try {
    return workOnLoadedGraph(arguments, work, console);
  } catch (const std::exception&) {
    const QString text = textOfHandledException();
    console.clearProgress();
    console.writeLog(LogLevel::error, text);
    return resultOfFaults({faultLine(text)});
  }
}

}  // namespace

void GraphArguments::addTo(CLI::App& command) {
  command.add_option("GRAPH", graph, "the graph file")->required()->type_name("");
  command.add_option("--set", settings, "a value for a parameter of the graph")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command.add_flag("--json", isJson, "print one JSON object on standard output");
  options.addTo(command);
}

ExitStatus workOnGraph(const GraphArguments& arguments, GraphWork work, const GraphReport& report,
                       GraphJson json) {
  Console console(arguments.options.isQuiet);
  if (const auto settings = splitNameValues("--set", arguments.settings); !settings) {
    console.writeLog(LogLevel::error, settings.error());
    return ExitStatus::wrongUsage;
  }
  if (!startLog(arguments.options.reports, console)) {
    return ExitStatus::failed;
  }
  const ProgramServices services(console, arguments.options.diskWaitSeconds,
                                 QString::fromStdString(arguments.graph));
  const RunResult result = guardedWork(arguments, work, console);
  report(arguments, result, console);
  if (arguments.isJson) {
    std::fputs(printed(json(result)).c_str(), stdout);
  }
  return finishRun(result, arguments.options.reports, console);
}

}  // namespace kelvarin
