// The action ReadCSV: reads a CSV file. The types of columns that are not declared are inferred
// from the first rows.
#pragma once

#include "host/tables/csv/csv_batch_reader.h"
#include "host/tables/files/table_source.h"

namespace kelvarin {

class ReadCsv : public Described<ReadCsv, TableSource> {
 public:
  ReadCsv(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;

 protected:
  FileFormat format() const override { return FileFormat::csv; }
  Result<std::unique_ptr<BatchReader>, QString> makeReaderOf(const QString& path) const override;

 private:
  CsvReadSettings m_settings;
  ColumnSettings m_columns;
};

}  // namespace kelvarin
