#include "cli/rejects_file.h"

#include <QDir>
#include <QFileInfo>

#include "cli/command_graph.h"
#include "cli/reports/messages.h"
#include "cli/reports/rejected_rows_source.h"
#include "cli/table_kind.h"
#include "host/contract/file_user.h"
#include "host/files/output_check.h"

namespace kelvarin {

namespace {

constexpr char kSink[] = "rejects";

QString nameOfFile(const std::string& path) {
  return QDir::cleanPath(absolutePath(path));
}

// As far as both are there, links followed.
bool isSameFile(const QString& path, const QString& other) {
  const QString real = QFileInfo(path).canonicalFilePath();
  return path == other || (!real.isEmpty() && real == QFileInfo(other).canonicalFilePath());
}

QString actionWithFile(const Graph& graph, const QString& path) {
  for (const GraphAction& action : graph.actions) {
    const auto* user = dynamic_cast<const FileUser*>(action.item.get());
    if (user == nullptr || action.isDisabled) {
      continue;
    }
    for (const UsedFile& file : user->usedFiles()) {
      if (isSameFile(path, QDir::cleanPath(file.path))) {
        return action.name;
      }
    }
  }
  return {};
}

ExitStatus writeTable(RejectedRows& rows, const RunOptions& options, const TableKind& kind,
                      Console& console) {
  RunOptions ofSink;
  ofSink.plugin = options.plugin;
  ofSink.diskWaitSeconds = options.diskWaitSeconds;
  ofSink.threads = options.threads;
  ofSink.isQuiet = true;
  const QString document =
      QStringLiteral(
          "<KelvarinGraph version='1.0'><Parameters><Parameter name='%1' value=''/></Parameters>"
          "<Actions><%2 name='rows'/>%3</Actions><Links><Link from='rows' to='%1'/></Links>"
          "</KelvarinGraph>")
          .arg(QLatin1String(kSink), QLatin1String(RejectedRowsSource::kTypeName),
               kind.writeElement(QLatin1String(kSink)));
  return runCommandGraph({document.toUtf8(),
                          {{QLatin1String(kSink), nameOfFile(options.reports.rejects)}},
                          std::make_unique<RejectedRowsSource>(XMLNode(), nullptr, rows)},
                         QLatin1String(kSink), ofSink, console,
                         [](const RunResult&) { return ExitStatus::done; });
}

bool writeLines(RejectedRows& rows, const RunOptions& options, Console& console) {
  const auto written = writeJsonLines(nameOfFile(options.reports.rejects), rows);
  if (!written) {
    console.writeLog(LogLevel::error, written.error());
  }
  return static_cast<bool>(written);
}

}  // namespace

bool writeRejects(RejectedRows& rows, const RunOptions& options, Console& console) {
  const TableKind* kind = tableKindOf(options.reports.rejects);
  const bool isWritten = kind == nullptr
                             ? writeLines(rows, options, console)
                             : writeTable(rows, options, *kind, console) == ExitStatus::done;
  const QString file = QString::fromStdString(options.reports.rejects);
  if (!isWritten) {
    console.writeLog(LogLevel::error, report_messages::rejectsNotWritten(file));
  } else if (rows.rowCount() > 0) {
    console.writeLog(LogLevel::information, report_messages::rejectsWritten(rows.rowCount(), file));
  }
  return isWritten;
}

QString faultOfReportFiles(const Graph& graph, const ReportOptions& options) {
  const std::pair<const char*, const std::string&> files[] = {{"--rejects", options.rejects},
                                                              {"--summary", options.summary},
                                                              {"--log-file", options.logFile}};
  for (const auto& [option, given] : files) {
    if (given.empty()) {
      continue;
    }
    const QString path = nameOfFile(given);
    if (const QString action = actionWithFile(graph, path); !action.isEmpty()) {
      return report_messages::fileOfGraph(QLatin1String(option), QString::fromStdString(given),
                                          action);
    }
    if (const QString reason = whyNotWritable(path); !reason.isEmpty()) {
      return reason;
    }
  }
  return {};
}

}  // namespace kelvarin
