// What running and checking a graph have in common: the arguments, and loading the plug-in and the
// graph.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/result.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/value_json.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

struct GraphArguments {
  std::string graph;
  std::vector<std::string> settings;
  std::string plugin;
  int diskWaitSeconds = 60;
  bool isJson = false;
  bool isQuiet = false;

  // GRAPH, --set, --plugin, --disk-wait, --json and --quiet.
  void addTo(CLI::App& command);
};

void addPluginOption(CLI::App& command, std::string& plugin);
void addDiskWaitOption(CLI::App& command, int& seconds);

// The plug-in's actions and the host's own.
Result<std::unique_ptr<ActionCatalogue>, QString> loadCatalogue(const std::string& plugin);

struct LoadedGraph {
  std::unique_ptr<ActionCatalogue> catalogue;
  Graph graph;
};

// The error has a line for every fault found.
Result<LoadedGraph, std::vector<LogLine>> loadGraph(const GraphArguments& arguments);

using GraphWork = RunResult (*)(Graph& graph, RunRecord& record, const ExecutionOptions& options);
using GraphReport = void (*)(const GraphArguments& arguments, const RunResult& result,
                             Console& console);

using GraphJson = Json (*)(const RunResult& result);

// Loads the graph, does `work` with it so that a signal can stop it, and gives the result to
// `report` and, when asked for, in the form of `json` to standard output.
ExitStatus workOnGraph(const GraphArguments& arguments, GraphWork work, GraphReport report,
                       GraphJson json);

}  // namespace kelvarin
