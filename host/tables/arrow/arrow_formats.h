// The library that reads and writes Parquet and Arrow files, loaded at the first such file:
// it is larger than all the rest, and most runs need none of it.
//
// The shared library KelvarinArrow implements it (host/tables/arrow_formats); the actions use it
// through this interface alone. It stays loaded to the end of the process.
// Threads: load() from any; the objects as their interfaces say.
#pragma once

#include <memory>

#include "host/contract/batch_steps.h"
#include "host/contract/one_row.h"
#include "host/tables/arrow/arrow_columns.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/files/output_file.h"

namespace kelvarin {

class TaskPool;

// Readers see by the content which form of Arrow it is.
enum class ArrowFormat { parquet, arrow, arrowStream };

// Writes one table to a file.
class ArrowTableWriter {
 public:
  virtual ~ArrowTableWriter() = default;
  // `columns` has the names and types of all rows to come.
  virtual Status<QString> begin(const OneRow& columns) = 0;
  virtual std::unique_ptr<BatchEncoder> makeEncoder() = 0;
  // `batch` is of the encoder.
  virtual Status<QString> write(EncodedBatch& batch) = 0;
  virtual Status<QString> finish() = 0;
};

class ArrowFormats {
 public:
  virtual ~ArrowFormats() = default;
  virtual std::unique_ptr<BatchReader> makeReader(ArrowFormat format, const QString& path,
                                                  ArrowRules rules) const = 0;
  // `file` and `pool` outlive the writer; `path` is the file's name in messages. Tasks of the pool
  // encode columns; without one, nothing runs beside the calling thread.
  virtual std::unique_ptr<ArrowTableWriter> makeWriter(ArrowFormat format, OutputFile& file,
                                                       const QString& path,
                                                       TaskPool* pool) const = 0;

  // The failure says why the library cannot be loaded.
  static Result<const ArrowFormats*, QString> load();
};

// What the shared library offers under the C name "kelvarinArrowFormats".
using ArrowFormatsFunction = const ArrowFormats* (*)();

}  // namespace kelvarin
