// Reads an Arrow stream unit by unit; large batches of it are several units.
//
// Used by: the source of a graph whose rows come from a stream.
// Threads and errors: those of BatchReader.
#pragma once

#include <optional>

#include "host/tables/arrow/column_tally.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/settings/column_settings.h"
#include "library/arrow_streams/arrow_type.h"
#include "library/arrow_streams/imported_batch.h"
#include "library/arrow_streams/input_stream.h"
#include "library/errors/error_details.h"

namespace kelvarin {

// The columns of a stream of this schema, and their types in it.
struct StreamColumns {
  std::vector<ArrowType> arrowTypes;
  TableColumns columns;
  QStringList notes;

  static Result<StreamColumns, ReadFault> of(const ArrowSchema& schema,
                                             const std::vector<DeclaredColumn>& declared);
};

// How the columns of a stream are read.
struct InputSettings {
  ColumnRules rules;
  struct SortColumn {
    QString name;
    bool isDescending = false;
  };
  std::vector<SortColumn> sortedBy;
  std::optional<TableColumns> expected;  // the only ones that the stream may have
  std::vector<bool> untouched;           // of these, those that nobody reads; empty: none
  long long firstRow = 0;                // its number in messages

  bool isUntouched(std::size_t column) const {
    return column < untouched.size() && untouched[column];
  }
};

ErrorDetails errorOfRead(const ReadFault& fault);

class StreamReader final : public BatchReader {
 public:
  StreamReader(InputStream stream, InputSettings settings);

  Result<TableColumns, QString> open(IsStopped isStopped) override;
  std::unique_ptr<TableUnit> readUnit() override;
  void accept(TableUnit& unit) override;
  float fractionDone() const override { return -1.0f; }
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_columns.notes; }
  QStringList warnings() const override;
  // The rows that have not been read, for another reader. Between two batches only.
  InputStream takeRest() { return std::move(m_stream); }
  bool isBetweenBatches() const { return m_batch == nullptr || m_nextRow == m_batch->rowCount(); }
  FaultLocation locationOfFailure() const override { return m_locationOfFailure; }
  bool mayWait() const override { return true; }
  bool hasUnitReady() const override { return !isBetweenBatches(); }

 private:
  class Unit;

  Result<bool, ReadFault> nextBatch();

  InputStream m_stream;
  const InputSettings m_settings;
  StreamColumns m_columns;
  FaultLocation m_locationOfFailure;

  std::shared_ptr<ImportedBatch> m_batch;  // null: the next one has to be read
  std::int64_t m_nextRow = 0;              // of the batch
  std::int64_t m_rowsInUnit = 1;
  long long m_rowsBefore = 0;  // the batch, of the stream
  bool m_isOver = false;

  std::vector<ColumnTally> m_tallies;
};

}  // namespace kelvarin
