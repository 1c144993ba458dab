#include "host/tables/csv/write_csv.h"

#include "host/contract/batch_collector.h"
#include "host/tables/csv/csv_batch_format.h"
#include "host/tables/csv/csv_file_writer.h"

namespace kelvarin {

const ActionDescription& WriteCsv::catalogue() {
  static const ActionDescription entry{
      .typeName = "WriteCSV",
      .toolTip = "Write a CSV file",
      .keywords = {"csv", "tsv", "text", "file", "export", "output", "save", "write", "out"},
      .fileTypes = {"csv", "tsv", "txt"},
      .attributes = TableSink::describedAttributes(CsvSettings::describedAttributes())};
  return entry;
}

WriteCsv::WriteCsv(XMLNode node, GlobalParameters* parameters)
    : Described(node, parameters), m_settings(node, parameters) {}

std::vector<ElementFault> WriteCsv::settingFaults() const {
  std::vector<ElementFault> faults = TableSink::settingFaults();
  const auto dialect =
      m_settings.dialect([this](const QString& text) { return expandString(text); });
  if (!dialect) {
    faults.push_back({LogLevel::error, node(), dialect.error()});
  }
  return faults;
}

void WriteCsv::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_settings.save(out);
  saveOutput(out);
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

std::unique_ptr<BatchEncoder> WriteCsv::makeEncoder(const OneRow& columns) {
  return std::make_unique<CsvBatchFormat>(m_dialect, typesOf(columns));
}

std::unique_ptr<TableFileWriter> WriteCsv::makeWriter(SinkFile& file) {
  return std::make_unique<CsvFileWriter>(file, m_dialect);
}

}  // namespace kelvarin
