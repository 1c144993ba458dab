// Reads a CSV file in batches: blocks of bytes, their fields as values, column by column.
//
// Types are inferred from the first rows, whose blocks are kept for that.
// Threads: see BatchReader.
#pragma once

#include <atomic>
#include <deque>
#include <optional>

#include "host/tables/csv/csv_block_reader.h"
#include "host/tables/csv/csv_row_locator.h"
#include "host/tables/csv/csv_values.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

class CsvBatchReader : public BatchReader {
 public:
  CsvBatchReader(const QString& path, const CsvDialect& dialect, ColumnRules rules);

  Result<TableColumns, QString> open() override;
  Result<ReadOutcome, QString> next(RowBatch& batch) override;
  Status<QString> tryFirstRows() override;
  float fractionDone() const override;
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_notes; }
  QStringList warnings() const override;
  void cancel() override { m_file.cancel(); }

 private:
  Status<QString> settleColumns();
  Status<QString> nameByDeclarations();
  Status<QString> inferTypes();
  // The first rows of the block.
  Status<QString> convert(const CsvBlock& block, long long rowCount, RowBatch& batch);
  void noteTextColumns(const std::vector<TypeInference>& inferences);
  QString badFieldText(const CsvBlock& block, std::size_t column, const BadField& field) const;

  QString m_path;
  CsvFile m_file;
  CsvDialect m_dialect;
  ColumnRules m_rules;
  CsvHead m_head;
  TableColumns m_columns;
  std::vector<bool> m_isDeclared;
  QStringList m_notes;
  std::optional<CsvNullRule> m_nulls;
  std::vector<BadFieldCount> m_badFields;
  std::vector<FieldConverter> m_converters;  // of the block at work

  std::optional<CsvRowLocator> m_locator;
  std::optional<CsvBlockReader> m_blocks;
  CsvBlock m_block;
  std::deque<CsvBlock> m_held;  // read to infer the types
  std::atomic<long long> m_bytesDone{0};
};

}  // namespace kelvarin
