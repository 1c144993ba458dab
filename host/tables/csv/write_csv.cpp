#include "host/tables/csv/write_csv.h"

#include "host/tables/messages.h"

namespace kelvarin {

namespace {
// Below the format's first capacity, so that its buffer grows for long rows only, and small enough
// to be in the processor's cache still.
constexpr std::size_t kFlushSize = 128 * 1024;
}  // namespace

WriteCsv::WriteCsv(XMLNode node, GlobalParameters* parameters)
    : TableSink(node, parameters), m_settings(node) {
  checkContentWhileLoading(node, kNoElements);
}

QString WriteCsv::toolTip() const {
  return QStringLiteral("Write a CSV file");
}

QStringList WriteCsv::getFileTypes() const {
  return {QStringLiteral("csv"), QStringLiteral("tsv"), QStringLiteral("txt")};
}

QStringList WriteCsv::getKeywords() const {
  return QStringLiteral("csv,tsv,text,file,export,output,save,write,out").split(u',');
}

void WriteCsv::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_settings.save(out);
  out << L"/>\n";
}

ActionItem* WriteCsv::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new WriteCsv(node, parameters);
}

Status<QString> WriteCsv::checkSettings() {
  Result<CsvDialect, QString> dialect =
      m_settings.dialect([this](const QString& text) { return expandString(text); });
  if (!dialect) {
    return Failure{dialect.error()};
  }
  m_dialect = std::move(*dialect);
  return Done{};
}

Status<QString> WriteCsv::begin(const OneRow& columns) {
  std::vector<MetaTypeColumn> types;
  for (int i = 0; i < columns.sz(); ++i) {
    types.push_back(columns.getMetaType(i));
  }
  m_rowsWritten = 0;
  m_format = std::make_unique<CsvRowFormat>(m_dialect, std::move(types));
  if (m_dialect.hasHeader && columns.sz() > 0) {
    if (const auto column = m_format->appendNames(columns)) {
      return Failure{needsQuoteText(columns, *column, true)};
    }
  }
  return Done{};
}

Status<QString> WriteCsv::writeRow(const OneRow& row) {
  if (const auto column = m_format->appendRow(row)) [[unlikely]] {
    return Failure{needsQuoteText(row, *column, false)};
  }
  ++m_rowsWritten;
  return m_format->text().size() >= kFlushSize ? flush() : Status<QString>(Done{});
}

Status<QString> WriteCsv::flush() {
  const std::string_view text = m_format->text();
  Status<QString> status = output().write(text.data(), text.size());
  m_format->clear();
  return status;
}

Status<QString> WriteCsv::finish() {
  return flush();
}

void WriteCsv::release() {
  m_format.reset();
}

QString WriteCsv::needsQuoteText(const OneRow& row, int column, bool isName) const {
  const QString name = row.colName(column);
  return table_messages::needsQuote(expandedFile(), isName ? 0 : m_rowsWritten + 1, name,
                                    isName ? name : row.col(column, nullptr));
}

}  // namespace kelvarin
