#include "cli/graph_run.h"

#include <utility>

#include "cli/interrupt.h"
#include "cli/messages.h"
#include "cli/progress_line.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

void addDiskWaitOption(CLI::App& command, int& seconds) {
  constexpr int kMaxSeconds = 1'000'000;
  command.add_option("--disk-wait", seconds, "how long to wait for space on a full disk")
      ->check(CLI::Range(0, kMaxSeconds))
      ->type_name("SECONDS")
      ->capture_default_str();
}

void addThreadsOption(CLI::App& command, int& threads) {
  constexpr int kMaxThreads = 1024;
  command
      .add_option("--threads", threads,
                  "how many threads compute; the result is the same [as many as processors]")
      ->check(CLI::Range(1, kMaxThreads))
      ->type_name("N");
}

}  // namespace

void addPluginOption(CLI::App& command, std::string& plugin) {
  command
      .add_option("--plugin", plugin, "the plug-in's file, in place of the one beside the program")
      ->type_name("FILE")
      ->envname("KELVARIN_PLUGIN");
}

void RunOptions::addTo(CLI::App& command) {
  addPluginOption(command, plugin);
  addThreadsOption(command, threads);
  addDiskWaitOption(command, diskWaitSeconds);
  command.add_flag("--quiet", isQuiet, "only errors and warnings on standard error");
}

Result<std::unique_ptr<ActionCatalogue>, QString> loadCatalogue(
    const std::string& plugin, std::unique_ptr<ActionItem> extraAction) {
  auto library = PluginLibrary::load(QString::fromStdString(plugin));
  if (!library) {
    return Failure{library.error()};
  }
  ActionCatalogue::Prototypes actions = makeTableActions();
  if (extraAction) {
    actions.push_back(std::move(extraAction));
  }
  return std::make_unique<ActionCatalogue>(std::move(*library), std::move(actions));
}

RunResult workInterruptibly(Graph& graph, GraphWork work, const RunOptions& runOptions,
                            Console& console) {
  graph.settings->setThreadCount(runOptions.threads);
  RunRecord record;
  const InterruptibleRun interruptible(record);
  ProgressLine progress(console);
  ExecutionOptions options;
  if (console.showsProgress()) {
    options.progress = [&progress](const RunProgress& now) { progress.show(now); };
  }
  RunResult result = work(graph, record, options);
  console.clearProgress();
  if (result.state == State::stoppedByUser) {
    console.writeLog(LogLevel::warning, program_messages::interrupted());
  }
  return result;
}

ExitStatus exitStatusOf(const RunResult& result) {
  if (result.state == State::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  return result.isOk() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace kelvarin
