// Reads a Parquet file, or an Arrow file or stream (both forms of the Arrow inter-process format).
//
// Threads: see BatchReader.
#pragma once

#include <atomic>
#include <memory>

#include "arrow/type_fwd.h"
#include "host/tables/arrow/arrow_columns.h"
#include "host/tables/arrow_formats/group_decoding.h"

namespace kelvarin {

class ArrowTableReader : public BatchReader {
 public:
  ArrowTableReader(const QString& path, std::unique_ptr<ArrowFile> file, ArrowRules rules);

  Result<TableColumns, QString> open(IsStopped isStopped) override;
  std::unique_ptr<TableUnit> readUnit() override;
  void accept(TableUnit& unit) override;
  long long rowCount() const override { return m_file->rowCount(); }
  long long skipRows(long long count) override;
  float fractionDone() const override;
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_notes; }
  QStringList warnings() const override;
  FaultLocation locationOfFailure() const override { return m_locationOfFailure; }
  bool mayWait() const override { return m_mayWait; }

 private:
  arrow::Status beginGroup();
  QString failureText(const arrow::Status& status) const;

  const QString m_path;
  std::unique_ptr<ArrowFile> m_file;
  ArrowRules m_rules;
  std::shared_ptr<DecodingPlan> m_plan;
  QStringList m_notes;
  FaultLocation m_locationOfFailure;
  bool m_mayWait = false;

  std::shared_ptr<GroupDecoding> m_group;  // null at the end
  std::size_t m_nextUnit = 0;              // of the group
  long long m_rowsBefore = 0;              // the group

  std::vector<ColumnTally> m_tallies;
  std::atomic<long long> m_rowsAccepted{0};
};

}  // namespace kelvarin
