// Collects rows into batches and passes these to the writer of a Parquet or an Arrow file.
#pragma once

#include <memory>

#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow_formats/arrow_output_stream.h"
#include "host/tables/arrow_formats/row_collector.h"

namespace kelvarin {

// Writes batches of one schema to a stream. Exceptions of the format's library end here.
class ArrowBatchWriter {
 public:
  virtual ~ArrowBatchWriter() = default;
  virtual arrow::Status open(std::shared_ptr<ArrowOutputStream> stream,
                             std::shared_ptr<arrow::Schema> schema) = 0;
  virtual arrow::Status write(const arrow::RecordBatch& batch) = 0;
  virtual arrow::Status close() = 0;
};

std::unique_ptr<ArrowBatchWriter> makeParquetWriter();
std::unique_ptr<ArrowBatchWriter> makeIpcWriter();

class BatchedArrowWriter final : public ArrowTableWriter {
 public:
  BatchedArrowWriter(std::unique_ptr<ArrowBatchWriter> writer, OutputFile& file,
                     const QString& path);
  // What has not been written by then is abandoned.
  ~BatchedArrowWriter() override;

  Status<QString> begin(const OneRow& columns) override;
  Status<QString> writeRow(const OneRow& row) override;
  Status<QString> finish() override;

 private:
  arrow::Status writeCollected();
  Status<QString> outcome(const arrow::Status& status) const;

  QString m_path;
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::unique_ptr<RowCollector> m_collector;
  std::unique_ptr<ArrowBatchWriter> m_writer;
};

}  // namespace kelvarin
