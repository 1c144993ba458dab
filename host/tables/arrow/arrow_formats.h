// The library that reads and writes Parquet and Arrow files, loaded at the first such file:
// it is larger than all the rest, and most runs need none of it.
//
// The shared library KelvarinArrow implements it (host/tables/arrow_formats); the actions use it
// through this interface alone. It stays loaded to the end of the process.
// Threads: load() from any; the objects as their interfaces say.
#pragma once

#include <memory>

#include "host/contract/batch_steps.h"
#include "host/tables/arrow/arrow_columns.h"
#include "host/tables/arrow/stored_type.h"
#include "host/tables/files/batch_reader.h"
#include "host/tables/files/output_file.h"
#include "host/tables/files/table_file_writer.h"

namespace kelvarin {

class TaskPool;

// Readers see by the content which form of Arrow it is.
enum class ArrowFormat { parquet, arrow, arrowStream };

class ArrowFormats {
 public:
  virtual ~ArrowFormats() = default;
  virtual std::unique_ptr<BatchReader> makeReader(ArrowFormat format, const QString& path,
                                                  ArrowRules rules) const = 0;
  // Makes what writers of every format take.
  virtual std::unique_ptr<BatchEncoder> makeEncoder() const = 0;
  // `file` and `pool` outlive the writer; `path` is the file's name in messages. Tasks of the pool
  // encode columns; without one, nothing runs beside the calling thread.
  virtual std::unique_ptr<TableFileWriter> makeWriter(ArrowFormat format, OutputFile& file,
                                                      const QString& path, StoredColumns stored,
                                                      TaskPool* pool) const = 0;

  // The failure says why the library cannot be loaded.
  static Result<const ArrowFormats*, QString> load();
};

// What the shared library offers under the C name "kelvarinArrowFormats".
using ArrowFormatsFunction = const ArrowFormats* (*)();

}  // namespace kelvarin
