#include "host/tables/csv/read_csv.h"

#include <QSet>

#include "host/tables/messages.h"

namespace kelvarin {

namespace {
const QString kAbort = QStringLiteral("abort");
const QString kNull = QStringLiteral("null");
}  // namespace

ReadCsv::ReadCsv(XMLNode node, GlobalParameters* parameters)
    : TableSource(node, parameters),
      m_settings(node),
      m_onBadValue(attributeOr(node, u"onBadValue", kAbort)) {
  setSortedOn(attributeOr(node, u"sortedOn", QString()));
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == QLatin1String("Column")) {
      m_columns.push_back(
          {attributeOr(child, u"name", QString()), attributeOr(child, u"meta", QString())});
    }
  }
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
  if (m_onBadValue != kAbort) {
    saveAttribute(out, L"onBadValue", m_onBadValue);
  }
  if (m_columns.empty()) {
    out << L"/>\n";
    return;
  }
  out << L">\n";
  for (const ColumnElement& column : m_columns) {
    out << L"<Column";
    saveAttribute(out, L"name", column.name);
    saveAttribute(out, L"meta", column.meta);
    out << L"/>\n";
  }
  out << L"</" << typeName() << L">\n";
}

ActionItem* ReadCsv::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new ReadCsv(node, parameters);
}

Result<std::vector<DeclaredColumn>, QString> ReadCsv::declaredColumns() const {
  std::vector<DeclaredColumn> columns;
  QSet<QString> names;
  for (const ColumnElement& element : m_columns) {
    const QString name = expandString(element.name);
    const QString meta = expandString(element.meta);
    const QChar type = meta.size() == 1 ? meta[0] : QChar();
    if (type != u'F' && type != u'K' && type != u'U') {
      return Failure{table_messages::badColumnMeta(name, meta)};
    }
    if (names.contains(name)) {
      return Failure{table_messages::declaredTwice(name)};
    }
    names.insert(name);
    columns.push_back({name, static_cast<MetaTypeColumn>(type.toLatin1())});
  }
  return columns;
}

Result<std::unique_ptr<BatchReader>, QString> ReadCsv::makeReader(const QString& path) const {
  const Result<CsvDialect, QString> dialect = m_settings.dialect(*this);
  if (!dialect) {
    return Failure{dialect.error()};
  }
  const QString onBadValue = expandString(m_onBadValue);
  if (onBadValue != kAbort && onBadValue != kNull) {
    return Failure{table_messages::badOnBadValue(onBadValue)};
  }
  const Result<std::vector<DeclaredColumn>, QString> columns = declaredColumns();
  if (!columns) {
    return Failure{columns.error()};
  }
  CsvReadSettings settings{*dialect, onBadValue == kNull, *columns};
  return std::unique_ptr<BatchReader>(std::make_unique<CsvBatchReader>(path, std::move(settings)));
}

}  // namespace kelvarin
