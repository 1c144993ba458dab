#include "cli/graphs/graph_file.h"

#include <cstdio>

#include <QFile>
#include <QStringDecoder>

#include "cli/command_graph.h"
#include "cli/graphs/messages.h"
#include "host/engine/graph_reader.h"
#include "host/engine/messages.h"
#include "host/files/replace_file.h"

namespace kelvarin {

namespace {

QString textOf(const QByteArray& bytes) {
  const auto encoding = QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
  QString text = QStringDecoder(encoding)(bytes);
  if (text.startsWith(QChar(QChar::ByteOrderMark))) {
    text.remove(0, 1);
  }
  return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
}

std::optional<QByteArray> bytesOf(const std::string& path, Console& console) {
  if (path == kStandardStream) {
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.readAll() : QByteArray();
  }
  auto read = readGraphFile(QString::fromStdString(path));
  if (!read) {
    for (const GraphError& error : read.error()) {
      console.writeLog(LogLevel::error, error.text());
    }
    return std::nullopt;
  }
  return std::move(*read);
}

}  // namespace

std::optional<GraphFile> graphFileOf(const QString& name, const QByteArray& bytes,
                                     Console& console) {
  const auto parsed = parseXml(bytes);
  if (!parsed) {
    const GraphError error{name, parsed.error().position, parsed.error().message};
    console.writeLog(LogLevel::error, error.text());
    return std::nullopt;
  }
  if (parsed->name() != QLatin1String("KelvarinGraph")) {
    const GraphError error{name, parsed->position(), engine_messages::notAGraph(parsed->name())};
    console.writeLog(LogLevel::error, error.text());
    return std::nullopt;
  }
  return GraphFile{name, bytes, textOf(bytes), *parsed};
}

std::optional<GraphFile> readGraphText(const std::string& path, Console& console) {
  const auto bytes = bytesOf(path, console);
  if (!bytes) {
    return std::nullopt;
  }
  const QString name =
      path == kStandardStream ? graph_messages::standardInput() : QString::fromStdString(path);
  return graphFileOf(name, *bytes, console);
}

std::unique_ptr<ActionCatalogue> loadCatalogueOf(const std::string& plugin, Console& console) {
  auto catalogue = loadCatalogue(plugin);
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return nullptr;
  }
  return std::move(*catalogue);
}

bool writeGraphText(const std::string& path, const QString& document, Console& console) {
  const QByteArray bytes = document.toUtf8();
  if (path == kStandardStream) {
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    return true;
  }
  const QString file = QString::fromStdString(path);
  if (const auto outcome = replaceFile(file, bytes); !outcome) {
    console.writeLog(LogLevel::error, engine_messages::cannotSaveGraph(file, outcome.error()));
    return false;
  }
  return true;
}

}  // namespace kelvarin
