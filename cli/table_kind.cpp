#include "cli/table_kind.h"

#include <QFileInfo>
#include <QStringList>

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

QString element(const QString& actionAndFile, const QString& name, const char* attributes,
                const QString& more) {
  return QStringLiteral("<%1='${%2}' name='%2' %3 %4/>")
      .arg(actionAndFile, name, QLatin1String(attributes), more);
}

}  // namespace

bool TableKind::isColumnar() const {
  return QLatin1String(name) == QLatin1String("gel");
}

QString TableKind::readElement(const QString& action, const QString& more) const {
  const char* file = isColumnar() ? "fileName" : "file";
  return element(QStringLiteral("Read%1 %2").arg(QLatin1String(format), QLatin1String(file)),
                 action, attributes, more);
}

QString TableKind::writeElement(const QString& action, const QString& more) const {
  const char* verb = isColumnar() ? "write" : "Write";
  return element(QStringLiteral("%1%2 file").arg(QLatin1String(verb), QLatin1String(format)),
                 action, attributes, more);
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
