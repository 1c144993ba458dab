#include "cli/graph_session.h"

#include <cstdio>

#include "cli/console.h"
#include "cli/interrupt.h"
#include "cli/last_resort.h"
#include "cli/messages.h"
#include "cli/name_value.h"
#include "cli/program_services.h"
#include "cli/progress_line.h"
#include "cli/run_report.h"
#include "cli/value_json.h"
#include "host/engine/graph_reader.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

LogLine faultLine(const QString& text, XMLNode::Place place = {}) {
  LogLine line{LogLevel::error, {}, text, {}};
  line.details.place = place;
  return line;
}

RunResult resultOfFaults(std::vector<LogLine> faults) {
  RunResult result;
  result.state = State::failed;
  result.log = std::move(faults);
  return result;
}

RunResult workOnLoadedGraph(const GraphArguments& arguments, GraphWork work, Console& console) {
  auto loaded = loadGraph(arguments);
  if (!loaded) {
    for (const LogLine& fault : loaded.error()) {
      console.writeLog(fault.level, fault.text);
    }
    return resultOfFaults(loaded.error());
  }
  RunRecord record;
  const InterruptibleRun interruptible(record);
  ProgressLine progress(console);
  ExecutionOptions options;
  if (console.showsProgress()) {
    options.progress = [&progress](const RunProgress& now) { progress.show(now); };
  }
  RunResult result = work(loaded->graph, record, options);
  console.clearProgress();
  return result;
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

void addPluginOption(CLI::App& command, std::string& plugin) {
  command
      .add_option("--plugin", plugin, "the plug-in's file, in place of the one beside the program")
      ->type_name("FILE")
      ->envname("KELVARIN_PLUGIN");
}

void addDiskWaitOption(CLI::App& command, int& seconds) {
  constexpr int kLongest = 1'000'000;
  command.add_option("--disk-wait", seconds, "how long to wait for space on a full disk")
      ->check(CLI::Range(0, kLongest))
      ->type_name("SECONDS")
      ->capture_default_str();
}

void GraphArguments::addTo(CLI::App& command) {
  command.add_option("GRAPH", graph, "the graph file")->required()->type_name("");
  command.add_option("--set", settings, "a value for a parameter of the graph")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  addPluginOption(command, plugin);
  addDiskWaitOption(command, diskWaitSeconds);
  command.add_flag("--json", isJson, "print one JSON object on standard output");
  command.add_flag("--quiet", isQuiet, "only errors and warnings on standard error");
}

Result<std::unique_ptr<ActionCatalogue>, QString> loadCatalogue(const std::string& plugin) {
  auto library = PluginLibrary::load(QString::fromStdString(plugin));
  if (!library) {
    return Failure{library.error()};
  }
  return std::make_unique<ActionCatalogue>(std::move(*library), makeTableActions());
}

Result<LoadedGraph, std::vector<LogLine>> loadGraph(const GraphArguments& arguments) {
  auto catalogue = loadCatalogue(arguments.plugin);
  if (!catalogue) {
    return Failure{std::vector{faultLine(catalogue.error())}};
  }
  const auto settings = splitNameValues("--set", arguments.settings);
  if (!settings) {
    return Failure{std::vector{faultLine(settings.error())}};
  }
  std::vector<ParameterOverride> overrides;
  for (const NameValue& setting : *settings) {
    overrides.push_back({setting.name, setting.value});
  }
  auto graph = readGraph(QString::fromStdString(arguments.graph), **catalogue, overrides);
  if (!graph) {
    std::vector<LogLine> faults;
    for (const GraphError& error : graph.error()) {
      faults.push_back(faultLine(error.text(), error.place));
    }
    return Failure{std::move(faults)};
  }
  return LoadedGraph{std::move(*catalogue), std::move(*graph)};
}

ExitStatus workOnGraph(const GraphArguments& arguments, GraphWork work, GraphReport report,
                       GraphJson json) {
  Console console(arguments.isQuiet);
  if (const auto settings = splitNameValues("--set", arguments.settings); !settings) {
    console.writeLog(LogLevel::error, settings.error());
    return ExitStatus::wrongUsage;
  }
  const ProgramServices services(console, arguments.diskWaitSeconds,
                                 QString::fromStdString(arguments.graph));
  const RunResult result = guardedWork(arguments, work, console);
  if (result.state == State::stoppedByUser) {
    console.writeLog(LogLevel::warning, QString::fromLatin1(program_messages::kInterrupted));
  }
  report(arguments, result, console);
  if (arguments.isJson) {
    std::fputs(printed(json(result)).c_str(), stdout);
  }
  if (result.state == State::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  return result.isOk() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace kelvarin
