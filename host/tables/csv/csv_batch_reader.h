// Reads a CSV file in units of whole records.
//
// Types are inferred from the first rows, whose units are kept for that.
// Threads: see BatchReader.
#pragma once

#include <atomic>
#include <deque>
#include <optional>

#include "host/tables/csv/csv_head.h"
#include "host/tables/csv/csv_read_settings.h"
#include "host/tables/csv/csv_row_locator.h"
#include "host/tables/csv/csv_unit.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

class CsvBatchReader : public BatchReader {
 public:
  CsvBatchReader(const QString& path, const CsvFileSettings& settings, ColumnRules rules,
                 std::size_t unitSize = CsvUnitReader::kUnitSize);

  // The value of the column of file names, if there is one; else it is the path.
  void setFileName(const QString& name) { m_fileName = name; }
  // Before open(): the file is one of several that make a table, of which `first` is the first one,
  // and open. It has the same columns, maybe in another order, and the same types.
  void follow(const CsvBatchReader& first, std::size_t fileIndex);

  void countOnly() override { m_isCountOnly = true; }
  Result<TableColumns, QString> open(IsStopped isStopped) override;
  std::unique_ptr<TableUnit> readUnit() override;
  void accept(TableUnit& unit) override;
  Status<QString> tryFirstRows() override;
  float fractionDone() const override;
  QString locationOfRow(long long row) const override;
  QStringList notes() const override { return m_notes; }
  QStringList warnings() const override;
  bool mayWait() const override { return !m_file->canOpenAgain(); }

  // How the file is written, where the settings leave that open; else empty.
  const QString& dialectInWords() const { return m_dialectInWords; }
  bool hasDialectOf(const CsvBatchReader& other) const;
  // Nothing more is read.
  void close();

 private:
  bool mayAllBeDeclared() const;
  Status<QString> settleDialect();
  Status<QString> settleColumns();
  Status<QString> settleFileColumn();
  Status<QString> settleOrder();
  Status<QString> takeTypesOfFirst();
  TableColumns columns() const;
  Status<QString> nameByDeclarations();
  Status<QString> inferTypes();
  void noteTextColumns(const std::vector<TypeInference>& inferences);
  std::unique_ptr<CsvUnit> readPiece();

  ColumnRules m_rules;
  std::size_t m_unitSize;
  CsvFileSettings m_settings;
  std::unique_ptr<TextInput> m_file = std::make_unique<TextInput>();
  CsvHead m_head;
  QString m_fileName;
  bool m_isCountOnly = false;
  QString m_dialectInWords;
  std::shared_ptr<const CsvTable> m_first;  // of the first file; null: this is it, or the only one
  std::shared_ptr<CsvTable> m_table;        // unchanged after open(), when units are parsed
  QStringList m_notes;
  std::optional<CsvRowLocator> m_locator;
  std::optional<CsvUnitReader> m_units;
  std::deque<std::unique_ptr<CsvUnit>> m_held;  // read to infer the types

  // Of the units that were accepted:
  long long m_line = 1;  // the one after them
  std::vector<BadFieldCount> m_badFields;
  std::atomic<long long> m_bytesDone{0};
};

}  // namespace kelvarin
