#include "host/engine/graph_reader.h"

#include <QFile>
#include <QFileInfo>

#include "host/engine/graph_document.h"
#include "host/engine/messages.h"
#include "host/files/file_hints.h"

namespace kelvarin {

QString GraphError::text() const {
  if (position.line == 0) {
    return QStringLiteral("%1: %2").arg(file, message);
  }
  return QStringLiteral("%1:%2:%3: %4")
      .arg(file)
      .arg(position.line)
      .arg(position.column)
      .arg(message);
}

Result<QByteArray, GraphErrors> readGraphFile(const QString& file) {
  QFile source(file);
  if (QFileInfo(file).isDir()) {
    return Failure{GraphErrors{
        {file, {}, engine_messages::cannotReadGraph(QStringLiteral("it is a folder"))}}};
  }
  if (!source.open(QIODevice::ReadOnly)) {
    const QString hint = missingFileHint(file);
    const QString text = engine_messages::cannotReadGraph(source.errorString());
    return Failure{GraphErrors{{file, {}, hint.isEmpty() ? text : text + u' ' + hint}}};
  }
  QByteArray document = source.readAll();
  if (source.error() != QFileDevice::NoError) {
    return Failure{GraphErrors{{file, {}, engine_messages::cannotReadGraph(source.errorString())}}};
  }
  return document;
}

Result<Graph, GraphErrors> readGraph(const QString& file, const ActionCatalogue& catalogue,
                                     const std::vector<ParameterOverride>& overrides) {
  const auto content = readGraphFile(file);
  if (!content) {
    return Failure{content.error()};
  }
  const QByteArray& document = *content;
  auto graph = parseGraph(document, file, catalogue, overrides);
  const bool isXml = document.trimmed().startsWith('<') || document.startsWith("\xEF\xBB\xBF<");
  if (const QString hint = foreignFormatHint(file, FileFormat::graph);
      !graph && !isXml && !hint.isEmpty()) {
    GraphErrors errors = graph.error();
    errors.back().message += u' ' + hint;
    return Failure{errors};
  }
  return graph;
}

Result<Graph, GraphErrors> parseGraph(const QByteArray& document, const QString& file,
                                      const ActionCatalogue& catalogue,
                                      const std::vector<ParameterOverride>& overrides) {
  const auto root = parseXml(document);
  if (!root) {
    return Failure{GraphErrors{{file, root.error().position, root.error().message}}};
  }
  GraphDocument reader(file, catalogue);
  reader.read(*root, overrides);
  if (!reader.errors().empty()) {
    return Failure{reader.errors()};
  }
  return reader.takeGraph();
}

Result<OpenedGraph, GraphErrors> openGraph(const QByteArray& document, const QString& file,
                                           const ActionCatalogue& catalogue,
                                           const std::vector<ParameterOverride>& overrides) {
  const auto root = parseXml(document);
  if (!root) {
    return Failure{GraphErrors{{file, root.error().position, root.error().message}}};
  }
  GraphDocument reader(file, catalogue, GraphDocument::Faults::keep);
  reader.read(*root, overrides);
  if (!reader.isGraph()) {
    return Failure{reader.errors()};
  }
  return reader.takeOpenedGraph();
}

}  // namespace kelvarin
