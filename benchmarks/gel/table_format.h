// One side of the benchmark: a file format that writes a table and reads it back in three ways,
// each time from a file that is opened anew.
//
// Threads: one at a time.  Errors: std::runtime_error.
#pragma once

#include <memory>
#include <string>

#include "benchmarks/gel/sample_table.h"

namespace kelvarin {

// What a reading found: equal for all formats of a table.
struct Found {
  std::uint64_t rows = 0;
  std::uint64_t digest = 0;  // of all values when asked for
  std::uint64_t added = 0;   // otherwise; missing values may differ from format to format
  double sum = 0.0;          // of the numbers, or the lengths of the texts, in a range

  friend bool operator==(const Found&, const Found&) = default;
};

// What is done with each value that was read.
enum class Values {
  added,    // cheaply: its bits, or the length of a text, are added up
  digested  // to see that nothing has changed
};

class TableFormat {
 public:
  virtual ~TableFormat() = default;
  virtual std::string name() const = 0;
  virtual std::string pathOf(const SampleTable& table, const std::string& folder) const = 0;

  // What is made once for a table and is no part of the writing.
  virtual void prepare(const SampleTable& table) = 0;
  virtual void write(const SampleTable& table, const std::string& folder) = 0;
  // No columns: all of them, in the table's order.
  virtual Found scan(const SampleTable& table, const std::string& folder,
                     const std::vector<std::string>& columns, Values values) = 0;
  // The rows of the table's range, three columns: how many there are, and the sum of the last one.
  virtual Found range(const SampleTable& table, const std::string& folder) = 0;
};

// `threads` is 1 or 2.
std::unique_ptr<TableFormat> makeGelFormat(int rowsInBlock, int threads);
enum class ParquetCompression { snappy, zstd };
std::unique_ptr<TableFormat> makeParquetFormat(ParquetCompression compression, int threads);

}  // namespace kelvarin
