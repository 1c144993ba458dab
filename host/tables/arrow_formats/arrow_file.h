// A Parquet or an Arrow file as the Arrow library reads it.
//
// A file has groups of rows one after another: row groups, or record batches. The columns of a
// group are read on their own, from its first row on.
// Used by: ArrowTableReader.
// Errors: statuses; exceptions of the libraries end here.
#pragma once

#include <memory>
#include <vector>

#include <QStringList>

#include "arrow/array/array_base.h"
#include "arrow/result.h"
#include "arrow/type.h"
#include "host/tables/files/input_file.h"

namespace kelvarin {

// Threads: any; calls for one column one at a time, calls for different ones at the same time.
class ArrowFileGroup {
 public:
  virtual ~ArrowFileGroup() = default;
  virtual std::int64_t rowCount() const = 0;
  // The next rows of a chosen column, of which there are so many: an array that has been validated,
  // and that is shorter where the file is damaged.
  virtual arrow::Result<std::shared_ptr<arrow::Array>> next(int column, std::int64_t rowCount) = 0;
};

// Threads: one at a time. Groups may outlive the file.
class ArrowFile {
 public:
  virtual ~ArrowFile() = default;
  // The file is open, and nothing of it has been read.
  virtual arrow::Status open(const std::shared_ptr<const InputFile>& input) = 0;
  // Of the whole file.
  virtual std::shared_ptr<arrow::Schema> schema() const = 0;
  // Before the first group, once: groups have these fields of the schema alone, in this order, and
  // nothing else is decoded.
  virtual arrow::Status choose(const std::vector<int>& fields) = 0;
  // -1 where it is not known before the end.
  virtual std::int64_t rowCount() const = 0;
  // Of the bytes, where rows are not known: 0 to 1, or -1. Any thread.
  virtual float fractionRead() const { return -1.0f; }
  // How many rows of a group are read at a time; after choose().
  virtual std::int64_t rowsInUnit() const = 0;
  // Passes over the next groups as far as they have no more than so many rows together, which need
  // not be read; returns how many they have.
  virtual std::int64_t skipGroups(std::int64_t rowCount) = 0;
  // Null at the end.
  virtual arrow::Result<std::unique_ptr<ArrowFileGroup>> nextGroup() = 0;
  // What was tolerated, about `source`; after the last group.
  virtual QStringList warnings(const QString& /*source*/) const { return {}; }
};

std::unique_ptr<ArrowFile> makeParquetFile();
std::unique_ptr<ArrowFile> makeIpcFile();

}  // namespace kelvarin
