// The action ReadCSV: reads a CSV file, or several as one table. The types of columns that are not
// declared are inferred from the first rows.
#pragma once

#include "host/tables/csv/csv_files_reader.h"
#include "host/tables/files/table_source.h"

namespace kelvarin {

class ReadCsv : public Described<ReadCsv, TableSource> {
 public:
  ReadCsv(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  std::vector<ElementFault> settingFaults() const override;
  // Of a pattern all that match it now.
  QList<UsedFile> usedFiles() const override;

 protected:
  FileFormat format() const override { return FileFormat::csv; }
  Result<std::unique_ptr<BatchReader>, QString> makeReaderOf(const QString& path) const override;

 private:
  QString nameInColumn(const QString& path) const;

  CsvReadSettings m_settings;
  ColumnSettings m_columns;
};

}  // namespace kelvarin
