#include "cli/gel/table_conversion.h"

#include <algorithm>
#include <utility>

#include <QDir>
#include <QFileInfo>

#include "cli/gel/messages.h"
#include "cli/program_services.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

namespace {

QString absolutePath(const std::string& path) {
  return path == kStandardOutput ? QString::fromStdString(path)
                                 : QDir::current().absoluteFilePath(QString::fromStdString(path));
}

// The file names are parameters, so that nothing in them is taken for a part of the document.
QByteArray documentOf(const ConversionGraph& graph) {
  return QStringLiteral(
             "<KelvarinGraph version='1.0'><Parameters><Parameter name='input' value=''/>"
             "<Parameter name='output' value=''/></Parameters><Actions>%1%2</Actions>"
             "<Links><Link from='input' to='output'/></Links></KelvarinGraph>")
      .arg(graph.source, graph.sink)
      .toUtf8();
}

}  // namespace

ExitStatus runConversion(const TableConversion& conversion, ConversionGraph graph, Console& console,
                         const std::function<ExitStatus(const RunResult& result)>& finish) {
  const ProgramServices services(console, conversion.options.diskWaitSeconds);
  const auto catalogue = loadCatalogue(conversion.options.plugin, std::move(graph.ownAction));
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  const std::vector<ParameterOverride> files{
      {QStringLiteral("input"), absolutePath(conversion.input)},
      {QStringLiteral("output"), absolutePath(conversion.output)}};
  auto parsed =
      parseGraph(documentOf(graph), QDir::current().filePath(QStringLiteral("conversion")),
                 **catalogue, files);
  if (!parsed) {
    for (const GraphError& error : parsed.error()) {
      console.writeLog(LogLevel::error, error.message);
    }
    return ExitStatus::failed;
  }
  const RunResult result = workInterruptibly(*parsed, runGraph, conversion.options, console);
  return result.isOk() ? finish(result) : exitStatusOf(result);
}

bool wouldReplaceItself(const TableConversion& conversion, Console& console) {
  const QString name = QString::fromStdString(conversion.input);
  const QString input = QFileInfo(name).canonicalFilePath();
  const bool isOneFile =
      !input.isEmpty() &&
      input == QFileInfo(QString::fromStdString(conversion.output)).canonicalFilePath();
  if (isOneFile) {
    console.writeLog(LogLevel::error, gel_messages::sameFile(name));
  }
  return isOneFile;
}

std::uint64_t rowsWritten(const RunResult& result) {
  const auto sink = std::find_if(result.actions.begin(), result.actions.end(),
                                 [](const ActionResult& action) { return !action.rowsIn.empty(); });
  return static_cast<std::uint64_t>(sink->rowsIn.front());
}

}  // namespace kelvarin
