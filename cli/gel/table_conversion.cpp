#include "cli/gel/table_conversion.h"

#include <utility>

#include <QFileInfo>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"
#include "host/engine/linear_graph.h"

namespace kelvarin {

QByteArray documentOf(const ConversionGraph& graph) {
  QString elements = graph.source;
  QStringList names{QLatin1String(kSourceAction)};
  for (const ConversionStep& step : graph.steps) {
    elements += step.element;
    names += step.action;
  }
  names += QLatin1String(kSinkAction);
  return linearGraph(elements + graph.sink, names, graph.parameters);
}

// The file names are given for this run alone, so that nothing in them is taken for a parameter.
CommandGraph commandGraphOf(const TableConversion& conversion, ConversionGraph graph) {
  const QString source = QLatin1String(kSourceAction);
  const QString sink = QLatin1String(kSinkAction);
  graph.parameters.push_back({source, {}});
  graph.parameters.push_back({sink, {}});
  return {documentOf(graph),
          {{source, absolutePath(conversion.input)}, {sink, absolutePath(conversion.output)}},
          std::move(graph.ownAction)};
}

ExitStatus runConversion(const TableConversion& conversion, ConversionGraph graph, Console& console,
                         const FinishedRun& finish) {
  return runCommandGraph(commandGraphOf(conversion, std::move(graph)), QStringLiteral("conversion"),
                         conversion.options, console, finish);
}

QString sourceElement(const TableKind& kind, const CsvOptions& csv, const QString& file) {
  return csv.readElement(kind, QLatin1String(kSourceAction), file);
}

QString sinkElement(const TableKind& kind, const QString& file) {
  return kind.isColumnar() ? columnarSinkElement(kRowsInBlock, file)
                           : kind.writeElement(QLatin1String(kSinkAction), {}, file);
}

QString columnarSinkElement(std::uint32_t rowsInBlock, const QString& file) {
  return tableKindNamed("gel")->writeElement(
      QLatin1String(kSinkAction),
      QStringLiteral("replaceAtEnd='1' nRowsInBlock='%1'").arg(rowsInBlock), file);
}

std::string nameOfColumnarTable(const std::string& path) {
  const bool isMainFileName =
      QString::fromStdString(path).endsWith(QLatin1String(kMainFileExtension), Qt::CaseInsensitive);
  return isMainFileName || isColumnarFile(path) ? path : path + std::string(kMainFileExtension);
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
  return static_cast<std::uint64_t>(result.actions.back().rowsIn.front());
}

void reportRows(const TableConversion& conversion, const TableKind& kind, const RunResult& result,
                Console& console) {
  if (conversion.isPiped()) {
    return;
  }
  const std::uint64_t rows = rowsWritten(result);
  const QString output = QString::fromStdString(conversion.output);
  if (kind.isColumnar() && rows == 0) {
    console.writeLog(LogLevel::warning,
                     gel_messages::noRows(QString::fromStdString(conversion.input), output));
    return;
  }
  console.writeLog(LogLevel::information, gel_messages::written(counted(rows, "row"), output));
}

}  // namespace kelvarin
