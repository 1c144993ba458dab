// Writes one CSV file: the header, then the texts of batches, which CsvBatchFormat makes.
//
// Used by: WriteCsv.
// Threads: the engine's.
// Errors: texts for the user.
#pragma once

#include <string>
#include <vector>

#include "host/tables/csv/csv_dialect.h"
#include "host/tables/csv/csv_text.h"
#include "host/tables/files/sink_file.h"

namespace kelvarin {

class CsvFileWriter final : public TableFileWriter {
 public:
  // `file` outlives the writer.
  CsvFileWriter(SinkFile& file, const CsvDialect& dialect) : m_file(file), m_dialect(dialect) {}

  Status<QString> begin(const OneRow& columns) override;
  Status<QString> write(std::unique_ptr<EncodedBatch> rows) override;
  Status<QString> finish() override { return flush(); }

 private:
  Status<QString> append(std::shared_ptr<const CsvText> text);
  Status<QString> flush();
  QString needsQuoteText(long long row, const UnwritableField& field) const;

  SinkFile& m_file;
  CsvDialect m_dialect;
  QVector<QString> m_names;
  std::string m_waiting;  // short texts, to be written together
  long long m_rowsWritten = 0;
};

}  // namespace kelvarin
