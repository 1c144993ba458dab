#include "cli/graph_session.h"

#include <algorithm>
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

RunResult resultOfFaults(const QStringList& faults) {
  RunResult result;
  result.state = State::failed;
  for (const QString& fault : faults) {
    result.log.push_back({LogLevel::error, {}, fault});
  }
  return result;
}

// Log lines are the actions' own and name columns and expressions; this says where in the graph
// file to look.
void tellPlacesOfErrors(const Graph& graph, const RunResult& result, Console& console) {
  for (const GraphAction& action : graph.actions) {
    const bool hasError =
        std::any_of(result.log.begin(), result.log.end(), [&](const LogLine& line) {
          return line.level == LogLevel::error && line.action == action.name;
        });
    if (hasError) {
      const QString text = QString::fromLatin1(program_messages::kPlaceOfError)
                               .arg(graph.file)
                               .arg(action.place.line)
                               .arg(action.place.column)
                               .arg(action.name, QString::fromLatin1(action.item->typeName()));
      console.write(text.toStdString() + '\n');
    }
  }
}

RunResult workOnLoadedGraph(const GraphArguments& arguments, GraphWork work, Console& console) {
  auto loaded = loadGraph(arguments);
  if (!loaded) {
    for (const QString& fault : loaded.error()) {
      console.writeLog(LogLevel::error, fault);
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
  tellPlacesOfErrors(loaded->graph, result, console);
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
    return resultOfFaults({text});
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

Result<LoadedGraph, QStringList> loadGraph(const GraphArguments& arguments) {
  auto catalogue = loadCatalogue(arguments.plugin);
  if (!catalogue) {
    return Failure{QStringList{catalogue.error()}};
  }
  const auto settings = splitNameValues("--set", arguments.settings);
  if (!settings) {
    return Failure{QStringList{settings.error()}};
  }
  std::vector<ParameterOverride> overrides;
  for (const NameValue& setting : *settings) {
    overrides.push_back({setting.name, setting.value});
  }
  auto graph = readGraph(QString::fromStdString(arguments.graph), **catalogue, overrides);
  if (!graph) {
    QStringList faults;
    for (const GraphError& error : graph.error()) {
      faults.append(error.text());
    }
    return Failure{faults};
  }
  return LoadedGraph{std::move(*catalogue), std::move(*graph)};
}

ExitStatus workOnGraph(const GraphArguments& arguments, GraphWork work, GraphReport report) {
  Console console(arguments.isQuiet);
  if (const auto settings = splitNameValues("--set", arguments.settings); !settings) {
    console.writeLog(LogLevel::error, settings.error());
    return ExitStatus::wrongUsage;
  }
  const ProgramServices services(console, arguments.diskWaitSeconds);
  const RunResult result = guardedWork(arguments, work, console);
  if (result.state == State::stoppedByUser) {
    console.writeLog(LogLevel::warning, QString::fromLatin1(program_messages::kInterrupted));
  }
  report(arguments, result, console);
  if (arguments.isJson) {
    std::fputs(printed(jsonOf(result)).c_str(), stdout);
  }
  if (result.state == State::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  return result.isOk() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace kelvarin
