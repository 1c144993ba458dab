// What all commands that run or check a graph have in common: their options, the catalogue of
// actions, and the run itself.
//
// Used by graph_session.cpp for graph files, and by gel/table_conversion.cpp for the graphs that
// commands write themselves.
#pragma once

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "base/result.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/reports/report_options.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

struct RunOptions {
  std::string plugin;
  int diskWaitSeconds = 60;
  int threads = 0;  // 0: as many as there are processors
  bool isQuiet = false;
  ReportOptions reports;  // of commands that offer them: reports.addTo()

  // --plugin, --threads, --disk-wait and --quiet.
  void addTo(CLI::App& command);
};

void addPluginOption(CLI::App& command, std::string& plugin);

// The plug-in's actions and the host's own, among them `extraAction` where one is given.
Result<std::unique_ptr<ActionCatalogue>, QString> loadCatalogue(
    const std::string& plugin, std::unique_ptr<ActionItem> extraAction = nullptr);

using GraphWork = RunResult (*)(Graph& graph, RunRecord& record, const ExecutionOptions& options);

// False where the log cannot be kept as the options say: reported.
[[nodiscard]] bool startLog(const ReportOptions& options, Console& console);

// Runs or checks the graph, as `work` does, with a progress line, and so that a signal ends it in
// order.
RunResult workInterruptibly(Graph& graph, GraphWork work, const RunOptions& options,
                            Console& console);

// The same with the reports that the options ask for; rejected rows are written when it is over.
RunResult workWithReports(Graph& graph, GraphWork work, const RunOptions& options,
                          Console& console);

// What is reported of every run when it is over, however it has ended, and its status.
ExitStatus finishRun(const RunResult& result, const ReportOptions& options, Console& console);

ExitStatus exitStatusOf(const RunResult& result);

}  // namespace kelvarin
