// Reads several CSV files as one table, one after the other.
//
// All have the same columns by name; their types are those of the first file. That is checked
// before any row is read. A file is open only while its rows are read.
// Threads: see BatchReader.
#pragma once

#include <memory>
#include <vector>

#include "host/tables/csv/csv_batch_reader.h"

namespace kelvarin {

// The names of regular files that match a pattern with `*`, `?` or `[...]`, sorted by their bytes.
// None where there is no such sign in it, or a file of just that name.
QStringList filesOfPattern(const QString& pattern);
bool isFilePattern(const QString& path);

class CsvFilesReader : public BatchReader {
 public:
  struct File {
    QString path;
    QString name;  // for the column of file names
  };

  CsvFilesReader(std::vector<File> files, CsvFileSettings settings, ColumnRules rules);

  void countOnly() override { m_isCountOnly = true; }
  Result<TableColumns, QString> open(IsStopped isStopped) override;
  std::unique_ptr<TableUnit> readUnit() override;
  void accept(TableUnit& unit) override;
  Status<QString> tryFirstRows() override { return m_readers.front()->tryFirstRows(); }
  float fractionDone() const override;
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_notes; }
  QStringList warnings() const override;

 private:
  class FailedUnit;

  std::unique_ptr<CsvBatchReader> newReader(std::size_t index) const;

  std::vector<File> m_files;
  CsvFileSettings m_settings;
  ColumnRules m_rules;
  bool m_isCountOnly = false;
  IsStopped m_isStopped;
  QStringList m_notes;
  // Of each file; null before it is its turn. Made while units are read, before the first unit of
  // the file is passed on.
  std::vector<std::unique_ptr<CsvBatchReader>> m_readers;
  std::size_t m_current = 0;  // being read
  bool m_hasEnded = false;

  // Of the units that were accepted:
  std::vector<long long> m_rows;           // of each file
  std::atomic<std::size_t> m_accepted{0};  // the file of the last one
};

}  // namespace kelvarin
