#include "cli/table_kind.h"

#include <QFileInfo>
#include <QStringList>

#include "host/files/file_hints.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

namespace {

constexpr TableKind kKinds[] = {
    {"csv", "csv", "CSV", ""},
    {"tsv", "tsv", "CSV", "separator='\\t'"},
    {"txt", "csv", "CSV", ""},
    {"parquet", "parquet", "Parquet", ""},
    {"arrow", "arrow", "Arrow", ""},
    {"arrows", "arrow", "Arrow", ""},
    {"feather", "arrow", "Arrow", ""},
    {"ipc", "arrow", "Arrow", ""},
    {"cgel_kelvarin", "gel", "ColumnarGel", ""},
};

constexpr char kSeparator[] = "separator=";

// An attribute may stand there once.
QString attributesOf(const TableKind& kind, const QString& more) {
  const bool isSeparatorGiven = kind.hasSeparator() && more.contains(QLatin1String(kSeparator));
  const QString attributes = isSeparatorGiven ? QString() : QLatin1String(kind.attributes);
  return QString(attributes + u' ' + more.trimmed()).trimmed();
}

QString element(const QString& type, const char* fileAttribute, const QString& action,
                const QString& file, const QString& attributes, const QString& children) {
  ToXMLStringTool escape;
  const QString path = file.isEmpty() ? QStringLiteral("${%1}").arg(action)
                                      : QString::fromWCharArray(escape.toXML(file));
  return QStringLiteral("<%1 name='%2' %3='").arg(type, action, QLatin1String(fileAttribute)) +
         path + (attributes.isEmpty() ? QStringLiteral("'") : QStringLiteral("' ")) + attributes +
         (children.isEmpty() ? QStringLiteral("/>")
                             : u'>' + children + QStringLiteral("</") + type + u'>');
}

}  // namespace

bool TableKind::isColumnar() const {
  return QLatin1String(name) == QLatin1String("gel");
}

bool TableKind::isCsv() const {
  return QLatin1String(format) == QLatin1String("CSV");
}

bool TableKind::hasTypes() const {
  return !isColumnar() && !isCsv();
}

bool TableKind::hasSeparator() const {
  return QLatin1String(attributes).contains(QLatin1String(kSeparator));
}

QString TableKind::readElement(const QString& action, const QString& more, const QString& file,
                               const QString& children) const {
  return element(QLatin1String("Read") + QLatin1String(format), isColumnar() ? "fileName" : "file",
                 action, file, attributesOf(*this, more), children);
}

QString TableKind::writeElement(const QString& action, const QString& more, const QString& file,
                                const QString& children) const {
  const QLatin1String verb(isColumnar() ? "write" : "Write");
  return element(verb + QLatin1String(format), "file", action, file, attributesOf(*this, more),
                 children);
}

const TableKind* tableKindOf(const std::string& path) {
  const QString extension = QFileInfo(QString::fromStdString(path)).suffix().toLower();
  for (const TableKind& kind : kKinds) {
    if (extension == QLatin1String(kind.extension)) {
      return &kind;
    }
  }
  return nullptr;
}

const TableKind* tableKindNamed(const std::string& name) {
  for (const TableKind& kind : kKinds) {
    if (name == kind.name) {
      return &kind;
    }
  }
  return nullptr;
}

const TableKind* tableKindToRead(const std::string& path) {
  const QFileInfo file(QString::fromStdString(path));
  const QString extension = file.suffix().toLower();
  if (extension != QLatin1String("gz") && extension != QLatin1String("zst")) {
    return tableKindOf(path);
  }
  const TableKind* kind = tableKindOf(file.completeBaseName().toStdString());
  return kind != nullptr && kind->isCsv() ? kind : nullptr;
}

const TableKind& tableKindOfContent(const std::string& path) {
  if (const TableKind* kind = tableKindToRead(path); kind != nullptr) {
    return *kind;
  }
  switch (formatOfContent(QString::fromStdString(path))) {
    case FileFormat::parquet:
      return *tableKindNamed("parquet");
    case FileFormat::arrow:
      return *tableKindNamed("arrow");
    case FileFormat::columnar:
      return *tableKindNamed("gel");
    default:
      return csvKind();
  }
}

const TableKind& csvKind() {
  return kKinds[0];
}

QString knownTableExtensions() {
  QStringList extensions;
  for (const TableKind& kind : kKinds) {
    if (!kind.isColumnar()) {
      extensions += QString::fromLatin1(kind.extension);
    }
  }
  return extensions.join(QStringLiteral(", "));
}

}  // namespace kelvarin
