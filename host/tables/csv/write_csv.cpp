#include "host/tables/csv/write_csv.h"

#include "host/contract/batch_collector.h"
#include "host/tables/csv/csv_batch_format.h"
#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {
// Texts below this size wait for more, unless somebody may be waiting for them.
constexpr std::size_t kWrittenAtOnce = 32 * 1024;

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
  m_types = typesOf(columns);
  m_names = columns.getColNamesDeep();
  m_rowsWritten = 0;
  m_waiting.clear();
  if (!m_dialect.hasHeader || m_types.empty()) {
    return Done{};
  }
  std::shared_ptr<const CsvText> header = CsvBatchFormat(m_dialect, m_types).encodeNames(columns);
  if (header->unwritable()) {
    return Failure{needsQuoteText(0, *header->unwritable())};
  }
  return append(std::move(header));
}

std::unique_ptr<BatchEncoder> WriteCsv::makeEncoder() {
  return std::make_unique<CsvBatchFormat>(m_dialect, m_types);
}

Status<QString> WriteCsv::writeEncoded(std::unique_ptr<EncodedBatch> batch) {
  const std::shared_ptr<const CsvText> text(static_cast<const CsvText*>(batch.release()));
  Status<QString> status = append(text);
  m_rowsWritten += text->rowCount();
  if (!text->unwritable()) {
    return status;
  }
  if (status) {
    status = flush();
  }
  return status ? Failure{needsQuoteText(m_rowsWritten + 1, *text->unwritable())} : status;
}

Status<QString> WriteCsv::append(std::shared_ptr<const CsvText> text) {
  const std::string_view bytes = text->text();
  if (bytes.size() < kWrittenAtOnce && !output().isStream()) {
    m_waiting += bytes;
    return m_waiting.size() < kWrittenAtOnce ? Status<QString>(Done{}) : flush();
  }
  const Status<QString> status = flush();
  return status ? write(std::move(text), bytes) : status;
}

Status<QString> WriteCsv::flush() {
  if (m_waiting.empty()) {
    return Done{};
  }
  const auto text = std::make_shared<const std::string>(std::exchange(m_waiting, {}));
  return write(text, *text);
}

Status<QString> WriteCsv::finish() {
  return flush();
}

void WriteCsv::release() {
  m_waiting = {};
}

QString WriteCsv::needsQuoteText(long long row, const UnwritableField& field) const {
  return table_messages::needsQuote(expandedFile(), row, m_names[field.column], field.value);
}

}  // namespace kelvarin
