// Writes a Parquet file, an Arrow file or an Arrow stream row group by row group.
//
// The columns of a row group are encoded as tasks of the run's pool while the rows of the next one
// come; without a pool, when the row group is full. Who did it changes no byte.
// Used by: the sinks, through ArrowTableWriter.
#pragma once

#include <deque>
#include <memory>

#include "arrow/status.h"
#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow_formats/arrow_output_stream.h"
#include "host/tables/arrow_formats/row_group.h"

namespace kelvarin {

// A column of a row group as its format stores it.
struct EncodedColumn {
  virtual ~EncodedColumn() = default;
};

// What the two formats differ in. Exceptions of their libraries end here, but for encode().
class RowGroupFormat {
 public:
  virtual ~RowGroupFormat() = default;
  virtual arrow::Status open(std::shared_ptr<ArrowOutputStream> stream, const OneRow& columns) = 0;
  // Any thread, several at the same time.
  virtual arrow::Status encode(const RowGroup& group, std::size_t column,
                               std::unique_ptr<EncodedColumn>& encoded) const = 0;
  virtual arrow::Status write(std::size_t rowCount,
                              std::vector<std::unique_ptr<EncodedColumn>> columns) = 0;
  virtual arrow::Status close() = 0;
};

std::unique_ptr<RowGroupFormat> makeParquetWriter();
std::unique_ptr<RowGroupFormat> makeIpcWriter(bool isStream);

class GroupEncoding;

class RowGroupWriter final : public ArrowTableWriter {
 public:
  RowGroupWriter(std::unique_ptr<RowGroupFormat> format, OutputFile& file, const QString& path,
                 TaskPool* pool);
  // What has not been written by then is abandoned.
  ~RowGroupWriter() override;

  Status<QString> begin(const OneRow& columns) override;
  std::unique_ptr<BatchEncoder> makeEncoder() override;
  Status<QString> write(EncodedBatch& batch) override;
  Status<QString> finish() override;

 private:
  arrow::Status append(const GatheredRows& rows);
  // Begins to encode the rows so far.
  arrow::Status endGroup();
  // Writes the row groups that come first, until so many are being encoded.
  arrow::Status writeGroups(std::size_t groupsLeft);
  std::size_t groupsAhead() const;
  Status<QString> outcome(const arrow::Status& status) const;

  QString m_path;
  TaskPool* m_pool;
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::unique_ptr<RowGroupFormat> m_format;
  std::vector<MetaTypeColumn> m_types;
  std::unique_ptr<RowGroup> m_group;
  std::deque<std::unique_ptr<GroupEncoding>> m_encodings;  // in the order of the file
};

}  // namespace kelvarin
