#include "cli/gel/table_conversion.h"

#include <sstream>
#include <utility>

#include <QFileInfo>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"
#include "host/contract/attribute_table.h"
#include "host/files/split_values.h"

namespace kelvarin {

namespace {

QString columnarAttributes(std::uint32_t rowsInBlock) {
  return QStringLiteral("replaceAtEnd='1' nRowsInBlock='%1'").arg(rowsInBlock);
}

}  // namespace

QByteArray documentOf(const ConversionGraph& graph) {
  QString elements = graph.source;
  QStringList names{QLatin1String(kSourceAction)};
  for (const ConversionStep& step : graph.steps) {
    elements += step.element;
    names += step.action;
  }
  names += QLatin1String(kSinkAction);
  return commandDocument(elements + graph.sink, names, graph.parameters);
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

QString sinkElement(const TableKind& kind, const QString& file, const SinkOptions& options) {
  std::wostringstream attributes;
  if (kind.isColumnar()) {
    attributes << columnarAttributes(kRowsInBlock).toStdWString();
  }
  if (!options.splitColumn.isEmpty()) {
    writeAttribute(attributes, u"split", QStringLiteral("2"));
    writeAttribute(attributes, u"createDir", QStringLiteral("1"));
    writeAttribute(attributes, u"splitVar", literalText(options.splitColumn));
  }
  std::wostringstream columns;
  for (const auto& [name, type] : options.types) {
    columns << L"<Column";
    writeAttribute(columns, u"name", literalText(name));
    writeAttribute(columns, u"type", type);
    columns << L"/>";
  }
  return kind.writeElement(QLatin1String(kSinkAction), QString::fromStdWString(attributes.str()),
                           file, QString::fromStdWString(columns.str()));
}

QString columnarSinkElement(std::uint32_t rowsInBlock, const QString& file) {
  return tableKindNamed("gel")->writeElement(QLatin1String(kSinkAction),
                                             columnarAttributes(rowsInBlock), file);
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
                Console& console, const QString& splitColumn) {
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
  const QString written = counted(rows, "row");
  console.writeLog(
      LogLevel::information,
      splitColumn.isEmpty()
          ? gel_messages::written(written, output)
          : gel_messages::writtenByValue(
                written, insertedBeforeExtension(output, QStringLiteral("*")), splitColumn));
}

}  // namespace kelvarin
