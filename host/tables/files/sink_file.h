// One file of a sink: where the bytes go, and what makes them of rows.
//
// Used by: TableSink.
// Threads: the engine's; the queue's task on any.
// Errors: texts for the user; nothing logs.
#pragma once

#include <memory>

#include "host/tables/files/output_file.h"
#include "host/tables/files/output_queue.h"
#include "host/tables/files/table_file_writer.h"

namespace kelvarin {

struct SinkFile {
  explicit SinkFile(const QString& name) : path(name) {}

  // After the last row: everything is on the disk.
  Status<QString> complete();
  // Nothing more is written, and the file is removed unless it was published.
  Status<QString> drop();

  QString path;
  OutputFile output;
  OutputQueue queue{output};
  std::unique_ptr<TableFileWriter> writer;
};

}  // namespace kelvarin
