// The action WriteCSV: writes its rows to a CSV file, or to standard output when the file is "-".
#pragma once

#include "host/tables/csv/csv_dialect.h"
#include "host/tables/csv/csv_text.h"
#include "host/tables/files/table_sink.h"

namespace kelvarin {

class CsvText;
struct UnwritableField;

class WriteCsv : public Described<WriteCsv, TableSink> {
 public:
  WriteCsv(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;

 protected:
  FileFormat format() const override { return FileFormat::csv; }
  Status<QString> checkSettings() override;
  Status<QString> begin(const OneRow& columns) override;
  std::unique_ptr<BatchEncoder> makeEncoder() override;
  Status<QString> writeEncoded(std::unique_ptr<EncodedBatch> batch) override;
  Status<QString> finish() override;
  void release() override;

 private:
  Status<QString> append(std::shared_ptr<const CsvText> text);
  Status<QString> flush();
  QString needsQuoteText(long long row, const UnwritableField& field) const;

  CsvSettings m_settings;
  CsvDialect m_dialect;
  std::vector<MetaTypeColumn> m_types;
  QVector<QString> m_names;
  std::string m_waiting;  // short texts, to be written together
  long long m_rowsWritten = 0;
};

}  // namespace kelvarin
