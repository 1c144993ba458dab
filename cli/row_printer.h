// Rows on standard output: as a table for people, as CSV, or as JSON.
//
// In a table a missing value is the word null, and texts that could be taken for it, or for
// nothing, are in quotes.
// Used by the commands that show rows.
// Threads: one at a time.
// Errors: a closed output is that of the program.
#pragma once

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/text_table.h"
#include "host/contract/one_row.h"
#include "host/contract/row_batch.h"
#include "host/tables/csv/csv_batch_format.h"

namespace kelvarin {

enum class RowFormat { table, csv, json };

// The option --format.
struct RowFormatOption {
  std::string given;

  void addTo(CLI::App& command);
  // Unless one is given: a table on a terminal, else CSV.
  RowFormat format() const;
};

class RowPrinter {
 public:
  RowPrinter(RowFormat format, const OneRow& columns);
  ~RowPrinter();
  RowPrinter(const RowPrinter&) = delete;
  RowPrinter& operator=(const RowPrinter&) = delete;

  void print(const RowBatch& batch);
  // What has waited, and what ends the output.
  void finish();

 private:
  void printTable(const RowBatch& batch);
  void printJson(const RowBatch& batch);
  void flushTable();

  const RowFormat m_format;
  std::vector<MetaTypeColumn> m_types;
  std::vector<std::string> m_jsonNames;  // with quotes and the colon
  std::unique_ptr<CsvBatchFormat> m_csv;
  TextTable m_table;
  long long m_rowCount = 0;
};

// A value of a row (column_bytes.h) as a table shows it, and as it is in JSON.
std::string cellOf(MetaTypeColumn type, const unsigned char* bytes);
std::string jsonTextOf(MetaTypeColumn type, const unsigned char* bytes);
std::string cellOfText(std::string_view text);

// For a terminal control characters are made visible; a file or a pipe gets the data as they are.
void printData(std::string_view text);

}  // namespace kelvarin
