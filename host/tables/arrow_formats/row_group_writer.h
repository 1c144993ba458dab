// Writes a Parquet file, an Arrow file or an Arrow stream row group by row group.
//
// The columns of a row group are encoded as tasks of the run's pool while the rows of the next one
// come; without a pool, when the row group is full. Who did it changes no byte.
// Used by: the sinks, through TableFileWriter.
#pragma once

#include <deque>
#include <memory>

#include "arrow/status.h"
#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/arrow/column_tally.h"
#include "host/tables/arrow_formats/arrow_output_stream.h"
#include "host/tables/arrow_formats/row_group.h"
#include "host/tables/arrow_formats/typed_column.h"

namespace kelvarin {

// A column of a row group as its format stores it.
struct EncodedColumn {
  virtual ~EncodedColumn() = default;
  BadValues badValues;
};

// What the two formats differ in. Exceptions of their libraries end here, but for encode().
class RowGroupFormat {
 public:
  virtual ~RowGroupFormat() = default;
  virtual arrow::Status open(std::shared_ptr<ArrowOutputStream> stream, const OneRow& columns,
                             const std::vector<StoredType>& types) = 0;
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

class RowGroupWriter final : public TableFileWriter {
 public:
  RowGroupWriter(std::unique_ptr<RowGroupFormat> format, OutputFile& file, const QString& path,
                 StoredColumns stored, TaskPool* pool);
  // What has not been written by then is abandoned.
  ~RowGroupWriter() override;

  Status<QString> begin(const OneRow& columns) override;
  Status<QString> write(std::unique_ptr<EncodedBatch> rows) override;
  Status<QString> finish() override;
  QStringList warnings() const override;

 private:
  arrow::Status append(const GatheredRows& rows);
  // Begins to encode the rows so far.
  arrow::Status endGroup();
  // Writes the row groups that come first, until so many are being encoded.
  arrow::Status writeGroups(std::size_t groupsLeft);
  arrow::Status writeGroup(GroupEncoding& encoding);
  // Counts the bad values of the next row group, or fails with the one that comes first.
  arrow::Status judge(const std::vector<std::unique_ptr<EncodedColumn>>& columns);
  QString locationOf(long long row) const;
  QString notStored(std::size_t column, const BadValues& bad) const;
  std::size_t groupsAhead() const;
  Status<QString> outcome(const arrow::Status& status) const;

  QString m_path;
  TaskPool* m_pool;
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::unique_ptr<RowGroupFormat> m_format;
  QVector<QString> m_names;
  std::vector<MetaTypeColumn> m_types;
  StoredColumns m_stored;
  std::vector<RowCount> m_badValues;  // of each column
  long long m_rowsWritten = 0;
  QString m_fault;  // why a value cannot be stored
  std::unique_ptr<RowGroup> m_group;
  std::deque<std::unique_ptr<GroupEncoding>> m_encodings;  // in the order of the file
};

}  // namespace kelvarin
