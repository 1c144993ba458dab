#include "cli/gel/table_kind.h"

#include <QFileInfo>
#include <QStringList>

namespace kelvarin {

namespace {

constexpr TableKind kKinds[] = {
    {"csv", "CSV", ""},       {"tsv", "CSV", "separator='\\t'"},
    {"txt", "CSV", ""},       {"parquet", "Parquet", ""},
    {"arrow", "Arrow", ""},   {"arrows", "Arrow", ""},
    {"feather", "Arrow", ""}, {"ipc", "Arrow", ""},
};

QString element(const char* verb, const TableKind& kind, const QString& name) {
  return QStringLiteral("<%1%2 name='%3' file='${%3}' %4/>")
      .arg(QLatin1String(verb), QLatin1String(kind.format), name, QLatin1String(kind.attributes));
}

}  // namespace

QString TableKind::readElement(const QString& name) const {
  return element("Read", *this, name);
}

QString TableKind::writeElement(const QString& name) const {
  return element("Write", *this, name);
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

const TableKind& csvKind() {
  return kKinds[0];
}

QString knownTableExtensions() {
  QStringList extensions;
  for (const TableKind& kind : kKinds) {
    extensions += QString::fromLatin1(kind.extension);
  }
  return extensions.join(QStringLiteral(", "));
}

}  // namespace kelvarin
