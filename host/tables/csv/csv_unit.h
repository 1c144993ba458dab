// Some records of a CSV file as they were read; parsing makes them a batch.
//
// Lines are counted from the start of the unit until it is accepted, since a unit is parsed before
// it is known how many lines stand before it.
// Threads: see BatchUnit. The table that units share does not change while one is parsed.
#pragma once

#include <optional>

#include "host/tables/csv/csv_unit_reader.h"
#include "host/tables/csv/csv_values.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

// What the records of a CSV file have in common.
struct CsvTable {
  QString path;
  std::size_t fileIndex = 0;  // among the files of one table
  CsvDialect dialect;
  TableColumns columns;
  std::vector<bool> isDeclared;    // of each column
  std::vector<std::size_t> order;  // of each column of the batches, which one of the file it is
  std::optional<std::string> fileName;  // the value of one more column, after the others
  bool areBadValuesNull = false;
  TextEncoding encoding = TextEncoding::utf8;
  std::optional<CsvValueRules> rules;
  std::shared_ptr<CsvBlockStore> blocks = std::make_shared<CsvBlockStore>();
};

class CsvUnit : public TableUnit {
 public:
  CsvUnit(std::shared_ptr<const CsvTable> table, CsvPiece piece);

  // Finds the records and their fields; parse() does so where nobody has.
  void index();
  void parse() override { parseFirst(INT64_MAX); }
  // What is wrong after so many rows is not found.
  void parseFirst(long long rowCount);
  std::size_t byteCount() const override { return m_size; }
  std::size_t fileIndex() const { return m_table->fileIndex; }

  // Known when the unit is indexed.
  const CsvBlock& block() const { return m_piece.block; }
  bool hasBadRecord() const { return m_fault.has_value() || !m_piece.failure.isEmpty(); }
  long long lineCount() const { return m_lineCount; }
  // Of each column, where bad values are tolerated.
  const std::vector<BadFieldCount>& badFields() const { return m_badFields; }

  // Makes the failure; `firstLine` is the line of the first byte.
  void settle(long long firstLine);

 private:
  // What is wrong in a line, and in which column, where it is one.
  struct Fault {
    long long line;
    QString column;
    QString what;
  };

  Fault faultOfRecord(const char* record, std::size_t size, long long line) const;
  Fault faultOfField(std::size_t column, const BadField& field) const;
  // Makes the batch of the first rows, up to one with a bad field.
  void convert(long long rowCount);
  std::vector<BatchColumn> columnsOf(const std::vector<FieldConverter>& converters,
                                     long long rowCount) const;

  std::shared_ptr<const CsvTable> m_table;
  CsvPiece m_piece;
  std::size_t m_size;
  bool m_isIndexed = false;
  long long m_lineCount = 0;
  std::optional<Fault> m_fault;
  std::vector<BadFieldCount> m_badFields;
};

}  // namespace kelvarin
