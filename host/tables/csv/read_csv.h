// The action ReadCSV: reads a CSV file.
//
// Attributes: file, separator, quote, header, nullText, sortedOn, onBadValue; children Column
// (name, meta) declare the types of columns, the others are inferred from the first rows.
#pragma once

#include "host/tables/csv/csv_batch_reader.h"
#include "host/tables/files/table_source.h"

namespace kelvarin {

class ReadCsv : public TableSource {
 public:
  ReadCsv(XMLNode node, GlobalParameters* parameters);

  const char* typeName() const override { return "ReadCSV"; }
  QString toolTip() const override;
  QStringList getFileTypes() const override;
  QStringList getKeywords() const override;
  void saveXML(std::wostringstream& out, QString name) override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 protected:
  FileFormat format() const override { return FileFormat::csv; }
  Result<std::unique_ptr<BatchReader>, QString> makeReader(const QString& path) const override;

 private:
  CsvSettings m_settings;
  ColumnSettings m_columns;
};

}  // namespace kelvarin
