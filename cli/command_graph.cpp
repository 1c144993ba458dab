#include "cli/command_graph.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QDir>

#include "cli/program_services.h"
#include "host/engine/linear_graph.h"

namespace kelvarin {

namespace {

// No expression can hold this name.
const QString kDollar = QStringLiteral("dollar sign");
const QString kStart = QStringLiteral("${");

}  // namespace

QString literalText(QString text) {
  return text.replace(kStart, kStart + kDollar + QStringLiteral("}{"));
}

std::vector<GraphParameter> parametersOfLiterals(const QString& elements) {
  std::vector<GraphParameter> parameters;
  if (elements.contains(kStart + kDollar)) {
    parameters.push_back({kDollar, QStringLiteral("$")});
  }
  return parameters;
}

QByteArray commandDocument(const QString& elements, const QStringList& names,
                           std::vector<GraphParameter> parameters) {
  std::ranges::move(parametersOfLiterals(elements), std::back_inserter(parameters));
  return linearGraph(elements, names, parameters);
}

QString absolutePath(const std::string& path) {
  return path == kStandardStream ? QString::fromStdString(path)
                                 : QDir::current().absoluteFilePath(QString::fromStdString(path));
}

std::optional<Graph> parseCommandGraph(const CommandGraph& graph, const QString& name,
                                       const ActionCatalogue& catalogue, Console& console) {
  auto parsed = parseGraph(graph.document, QDir::current().filePath(name), catalogue, graph.values);
  if (!parsed) {
    for (const GraphError& error : parsed.error()) {
      console.writeLog(LogLevel::error, error.message);
    }
    return std::nullopt;
  }
  return std::move(*parsed);
}

ExitStatus runCommandGraph(CommandGraph graph, const QString& name, const RunOptions& options,
                           Console& console, const FinishedRun& finish) {
  if (!startLog(options.reports, console)) {
    return ExitStatus::failed;
  }
  const ProgramServices services(console, options.diskWaitSeconds);
  const auto catalogue = loadCatalogue(options.plugin, std::move(graph.ownAction));
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  return runCommandGraph(graph, name, **catalogue, options, console, finish);
}

ExitStatus runCommandGraph(const CommandGraph& graph, const QString& name,
                           const ActionCatalogue& catalogue, const RunOptions& options,
                           Console& console, const FinishedRun& finish) {
  std::optional<Graph> parsed = parseCommandGraph(graph, name, catalogue, console);
  if (!parsed) {
    return ExitStatus::failed;
  }
  if (graph.prepare) {
    graph.prepare(*parsed);
  }
  const RunResult result = workWithReports(*parsed, graph.work, options, console);
  const ExitStatus status = result.isOk() ? finish(result) : exitStatusOf(result);
  const ExitStatus reported = finishRun(result, options.reports, console);
  return status == ExitStatus::done ? reported : status;
}

}  // namespace kelvarin
