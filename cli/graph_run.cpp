#include "cli/graph_run.h"

#include <algorithm>
#include <utility>

#include "cli/interrupt.h"
#include "cli/messages.h"
#include "cli/printable_text.h"
#include "cli/progress_line.h"
#include "cli/rejects_file.h"
#include "cli/reports/messages.h"
#include "cli/reports/progress_objects.h"
#include "cli/reports/run_explanation.h"
#include "host/contract/host_services.h"
#include "host/contract/host_session.h"
#include "host/reports/run_json.h"
#include "host/tables/files/output_file.h"
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
                  "threads that compute, with the same result [as many as processors]")
      ->check(CLI::Range(1, kMaxThreads))
      ->type_name("N");
}

}  // namespace

void addPluginOption(CLI::App& command, std::string& plugin) {
  command.add_option("--plugin", plugin, "the plug-in's file [beside the program]")
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

bool startLog(const ReportOptions& options, Console& console) {
  if (options.logFile.empty()) {
    return true;
  }
  const auto kept = console.keepLog(QString::fromStdString(options.logFile));
  if (!kept) {
    console.writeLog(LogLevel::error, kept.error());
  }
  return static_cast<bool>(kept);
}

namespace {

// The graph as the options want it, with what follows its run.
class FollowedRun {
 public:
  FollowedRun(Graph& graph, const RunOptions& options, Console& console)
      : m_graph(graph), m_reports(options.reports), m_console(console) {
    graph.settings->setThreadCount(options.threads);
    m_reports.applyTo(*graph.settings);
    m_reports.applyTo(m_execution);
    if (m_reports.collectsRejectedRows()) {
      m_rejected = std::make_unique<RejectedRows>(
          hostServices(), graph, m_record,
          RejectedRows::Settings{!m_reports.rejects.empty(), m_reports.maxErrors});
    }
  }

  RunResult run(GraphWork work) {
    const InterruptibleRun interruptible(m_record);
    HostSession session(m_rejected == nullptr ? hostServices() : m_rejected.get());
    const HostSession::Scope scope(&session);
    RunResult result =
        m_reports.progress == ProgressStyle::json ? runWithObjects(work) : runWithLine(work);
    if (m_rejected != nullptr) {
      result.rejectedRows = m_rejected->rowCount();
    }
    return result;
  }

  // Null: nobody wants them.
  RejectedRows* rejectedRows() const { return m_rejected.get(); }

 private:
  RunResult runWithObjects(GraphWork work) {
    ProgressObjects objects(m_graph, m_reports.limit.has_value(),
                            [this](std::string_view line) { m_console.write(line); });
    m_execution.progress = [&objects](const RunProgress& now) { objects.update(now); };
    RunResult result = work(m_graph, m_record, m_execution);
    objects.end(result);
    return result;
  }

  RunResult runWithLine(GraphWork work) {
    ProgressLine line(m_console);
    if (m_console.showsProgress() && m_reports.progress == ProgressStyle::automatic) {
      m_execution.progress = [&line](const RunProgress& now) { line.show(now); };
    }
    RunResult result = work(m_graph, m_record, m_execution);
    m_console.clearProgress();
    return result;
  }

  Graph& m_graph;
  const ReportOptions& m_reports;
  Console& m_console;
  RunRecord m_record;
  ExecutionOptions m_execution;
  std::unique_ptr<RejectedRows> m_rejected;
};

void addError(RunResult& result, const QString& text) {
  result.log.push_back({LogLevel::error, {}, text, {}});
  result.state = State::failed;
}

bool writeSummary(const RunResult& result, const std::string& path, Console& console) {
  const auto written = writeWholeFile(QString::fromStdString(path), printed(jsonOf(result)));
  if (!written) {
    console.writeLog(LogLevel::error, written.error());
  }
  return static_cast<bool>(written);
}

}  // namespace

RunResult workInterruptibly(Graph& graph, GraphWork work, const RunOptions& options,
                            Console& console) {
  RunOptions plain = options;
  plain.reports = {};
  return workWithReports(graph, work, plain, console);
}

RunResult workWithReports(Graph& graph, GraphWork work, const RunOptions& options,
                          Console& console) {
  if (const QString fault = faultOfReportFiles(graph, options.reports); !fault.isEmpty()) {
    console.writeLog(LogLevel::error, fault);
    RunResult result;
    addError(result, fault);
    return result;
  }
  FollowedRun followed(graph, options, console);
  RunResult result = followed.run(work);
  if (result.state == State::stoppedByUser) {
    console.writeLog(LogLevel::warning, program_messages::interrupted());
  } else if (!options.reports.rejects.empty() &&
             !writeRejects(*followed.rejectedRows(), options, console)) {
    addError(result,
             report_messages::rejectsNotWritten(QString::fromStdString(options.reports.rejects)));
  }
  return result;
}

ExitStatus finishRun(const RunResult& result, const ReportOptions& options, Console& console) {
  if (options.isExplained && !result.actions.empty()) {
    console.write(printable(explanationOf(result)));
  }
  ExitStatus status = exitStatusOf(result);
  if (!options.summary.empty() && !writeSummary(result, options.summary, console) &&
      status == ExitStatus::done) {
    status = ExitStatus::failed;
  }
  const auto warnings = std::ranges::count(result.log, LogLevel::warning, &LogLine::level);
  if (options.isStrict && warnings > 0 && status == ExitStatus::done) {
    console.writeLog(LogLevel::error, report_messages::endedByWarnings(warnings));
    status = ExitStatus::failed;
  }
  return status;
}

ExitStatus exitStatusOf(const RunResult& result) {
  if (result.state == State::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  return result.isOk() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace kelvarin
