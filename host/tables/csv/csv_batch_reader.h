// Reads a CSV file: the library's streaming reader for the bulk, this system's rules around it.
//
// The streaming reader gives every field as bytes; types are inferred from the first rows and
// values are converted here. A record longer than the reader's block makes it start again behind
// the last complete batch with a larger one. Threads: see BatchReader.
#pragma once

#include <atomic>
#include <memory>

#include "arrow/csv/reader.h"
#include "arrow/record_batch.h"
#include "host/tables/csv/csv_places.h"
#include "host/tables/csv/csv_stream.h"
#include "host/tables/csv/csv_values.h"
#include "host/tables/files/batch_reader.h"

namespace kelvarin {

// A column's type as the user declares it.
struct DeclaredColumn {
  QString name;
  MetaTypeColumn type;
};

struct CsvReadSettings {
  CsvDialect dialect;
  bool areBadValuesNull = false;
  std::vector<DeclaredColumn> columns;
};

class CsvBatchReader : public BatchReader {
 public:
  CsvBatchReader(const QString& path, CsvReadSettings settings);

  Result<TableColumns, QString> open() override;
  Result<ReadOutcome, QString> next(RowBatch& batch) override;
  float fractionDone() const override;
  QString placeOfRow(long long row) const override;
  QStringList warnings() const override;
  void cancel() override { m_file->cancel(); }

 private:
  using RawBatch = std::shared_ptr<arrow::RecordBatch>;

  Status<QString> settleColumns();
  arrow::Status openReader();
  arrow::Status readRawBatch(RawBatch& raw);
  // Null at the end.
  Result<RawBatch, QString> nextRawBatch();
  QString errorAtEnd() const;
  Status<QString> inferTypes();
  Status<QString> convert(const arrow::RecordBatch& raw, RowBatch& batch);
  QString readerError(const arrow::Status& status) const;
  QString columnPlace(long long row, std::size_t column) const;

  QString m_path;
  std::shared_ptr<CsvFile> m_file;
  CsvReadSettings m_settings;
  CsvHead m_head;
  std::unique_ptr<CsvPlaces> m_places;
  TableColumns m_columns;
  std::vector<bool> m_isDeclared;
  std::vector<BadFieldCount> m_badFields;

  std::shared_ptr<CsvStream> m_stream;
  std::shared_ptr<arrow::csv::StreamingReader>
      m_reader;  // null before the first batch and at the end
  bool m_isAtEnd = true;
  int m_blockSize = 1 << 20;
  long long m_readerOffset = 0;     // where m_reader began
  long long m_lastBatchOffset = 0;  // where the last batch began
  long long m_offset = 0;           // behind the last batch
  std::vector<RawBatch> m_held;     // read to infer the types
  std::size_t m_heldGiven = 0;
  long long m_rowsGiven = 0;
  std::atomic<long long> m_bytesDone{0};
};

}  // namespace kelvarin
