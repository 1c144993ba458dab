// What `kelvarin run` and `kelvarin check` have in common: their arguments, and the work on a graph
// file from loading it to the exit status.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/graph_run.h"
#include "cli/value_json.h"

namespace kelvarin {

struct GraphArguments {
  std::string graph;
  std::vector<std::string> settings;
  std::optional<std::string> lastAction;  // worked on with what feeds it; otherwise all are
  RunOptions options;
  bool isJson = false;
  bool isExplained = false;  // of a check: how expressions are evaluated
  // Changes the graph that was loaded; may be empty. The error is a fault of the graph.
  std::function<Status<QString>(Graph& graph)> prepare{};

  // GRAPH, --set, --json and those of RunOptions.
  void addTo(CLI::App& command);
};

using GraphReport =
    std::function<void(const GraphArguments& arguments, const RunResult& result, Console& console)>;

using GraphJson = Json (*)(const RunResult& result);

// Loads the graph, does `work` with it so that a signal can stop it, and passes the result to
// `report` and, when asked for, in the form of `json` to standard output.
ExitStatus workOnGraph(const GraphArguments& arguments, GraphWork work, const GraphReport& report,
                       GraphJson json);

}  // namespace kelvarin
