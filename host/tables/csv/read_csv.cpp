#include "host/tables/csv/read_csv.h"

namespace kelvarin {

ReadCsv::ReadCsv(XMLNode node, GlobalParameters* parameters)
    : TableSource(node, parameters), m_settings(node), m_columns(node) {
  setSortedOn(attributeOr(node, u"sortedOn", QString()));
  checkContentWhileLoading(node, kColumnElements);
}

QString ReadCsv::toolTip() const {
  return QStringLiteral("Read a CSV file");
}

QStringList ReadCsv::getFileTypes() const {
  return {QStringLiteral("csv"), QStringLiteral("tsv"), QStringLiteral("txt")};
}

QStringList ReadCsv::getKeywords() const {
  return QStringLiteral("csv,tsv,text,file,import,input,load,read,in").split(u',');
}

void ReadCsv::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_settings.save(out);
  if (!sortedOn().isEmpty()) {
    saveAttribute(out, L"sortedOn", sortedOn());
  }
  m_columns.saveAttributes(out);
  m_columns.saveChildrenAndEnd(out, typeName());
}

ActionItem* ReadCsv::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadCsv(node, parameters);
}

Result<std::unique_ptr<BatchReader>, QString> ReadCsv::makeReader(const QString& path) const {
  const TextExpansion expanded = [this](const QString& text) { return expandString(text); };
  const Result<CsvDialect, QString> dialect = m_settings.dialect(expanded);
  if (!dialect) {
    return Failure{dialect.error()};
  }
  Result<ColumnRules, QString> rules = m_columns.rules(expanded);
  if (!rules) {
    return Failure{rules.error()};
  }
  return std::unique_ptr<BatchReader>(
      std::make_unique<CsvBatchReader>(path, *dialect, std::move(*rules)));
}

}  // namespace kelvarin
