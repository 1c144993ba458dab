// Reads a Parquet file or an Arrow file (the file form of the Arrow inter-process format).
//
// Threads: see BatchReader.
#pragma once

#include <atomic>
#include <memory>

#include "arrow/record_batch.h"
#include "host/tables/arrow_formats/array_source.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

// What the two formats differ in. Exceptions of their libraries end here.
class ArrowFile {
 public:
  virtual ~ArrowFile() = default;
  virtual arrow::Status open(const std::string& path) = 0;
  virtual std::shared_ptr<arrow::Schema> schema() const = 0;
  // -1 when unknown.
  virtual long long rowCount() const = 0;
  // Null at the end.
  virtual arrow::Result<std::shared_ptr<arrow::RecordBatch>> nextBatch() = 0;
};

std::unique_ptr<ArrowFile> makeParquetFile();
std::unique_ptr<ArrowFile> makeIpcFile();

class ArrowBatchReader : public BatchReader {
 public:
  ArrowBatchReader(const QString& path, std::unique_ptr<ArrowFile> file, ColumnRules rules);

  Result<TableColumns, QString> open() override;
  Result<ReadOutcome, QString> next(RowBatch& batch) override;
  float fractionDone() const override;
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_notes; }
  QStringList warnings() const override;

 private:
  Status<QString> settleColumns(const arrow::Schema& schema);
  Status<QString> takeDeclaredTypes(const arrow::Schema& schema);
  void noteTimestamps(const arrow::Schema& schema);
  Status<QString> convert(const arrow::RecordBatch& raw, RowBatch& batch);
  QString badValueText(std::size_t column, const BadValue& value) const;
  QString failureText(const arrow::Status& status) const;

  QString m_path;
  std::unique_ptr<ArrowFile> m_file;
  ColumnRules m_rules;
  TableColumns m_columns;
  std::vector<ColumnTally> m_tallies;
  QStringList m_notes;
  std::atomic<long long> m_rowsGiven{0};
};

}  // namespace kelvarin
