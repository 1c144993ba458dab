#include "host/tables/csv/write_csv.h"

#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {
// Below the format's first capacity, so that its buffer grows for long rows only, and small enough
// to be in the processor's cache still.
constexpr std::size_t kFlushSize = 128 * 1024;

std::vector<AttributeDescription> describedAttributes() {
  std::vector<AttributeDescription> attributes = CsvSettings::describedAttributes();
  attributes.insert(attributes.begin(), TableSink::describedFile());
  return attributes;
}

}  // namespace

const ActionDescription& WriteCsv::catalogue() {
  static const ActionDescription entry{
      .typeName = "WriteCSV",
      .toolTip = "Write a CSV file",
      .keywords = {"csv", "tsv", "text", "file", "export", "output", "save", "write", "out"},
      .fileTypes = {"csv", "tsv", "txt"},
      .attributes = describedAttributes()};
  return entry;
}

WriteCsv::WriteCsv(XMLNode node, GlobalParameters* parameters)
    : Described(node, parameters), m_settings(node, parameters) {}

std::vector<ElementFault> WriteCsv::settingFaults() const {
  const auto dialect =
      m_settings.dialect([this](const QString& text) { return expandString(text); });
  return dialect ? std::vector<ElementFault>()
                 : std::vector<ElementFault>{{LogLevel::error, node(), dialect.error()}};
}

void WriteCsv::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_settings.save(out);
  out << L"/>\n";
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
  types.reserve(static_cast<std::size_t>(columns.sz()));
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
