// The action WriteCSV: writes its rows to a CSV file, or to standard output when the file is "-".
#pragma once

#include "host/tables/csv/csv_dialect.h"
#include "host/tables/csv/csv_row_format.h"
#include "host/tables/files/table_sink.h"

namespace kelvarin {

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
  Status<QString> writeRow(const OneRow& row) override;
  Status<QString> finish() override;
  void release() override;

 private:
  Status<QString> flush();
  QString needsQuoteText(const OneRow& row, int column, bool isName) const;

  CsvSettings m_settings;
  CsvDialect m_dialect;
  std::unique_ptr<CsvRowFormat> m_format;
  long long m_rowsWritten = 0;
};

}  // namespace kelvarin
