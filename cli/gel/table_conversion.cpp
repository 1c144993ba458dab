#include "cli/gel/table_conversion.h"

#include <algorithm>
#include <utility>

#include <QFileInfo>

#include "cli/gel/messages.h"

namespace kelvarin {

namespace {

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
  return runCommandGraph({documentOf(graph),
                          {{QStringLiteral("input"), absolutePath(conversion.input)},
                           {QStringLiteral("output"), absolutePath(conversion.output)}},
                          std::move(graph.ownAction)},
                         QStringLiteral("conversion"), conversion.options, console, finish);
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
