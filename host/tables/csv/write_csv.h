// The action WriteCSV: writes its rows to a CSV file, or to standard output when the file is "-".
#pragma once

#include "host/tables/csv/csv_dialect.h"
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
  std::unique_ptr<BatchEncoder> makeEncoder(const OneRow& columns) override;
  std::unique_ptr<TableFileWriter> makeWriter(SinkFile& file) override;

 private:
  CsvSettings m_settings;
  CsvDialect m_dialect;
};

}  // namespace kelvarin
