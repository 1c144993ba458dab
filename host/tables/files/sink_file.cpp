#include "host/tables/files/sink_file.h"

namespace kelvarin {

Status<QString> SinkFile::complete() {
  Status<QString> status = writer->finish();
  if (status) {
    status = queue.finish();
  }
  return status ? output.complete() : status;
}

Status<QString> SinkFile::drop() {
  const Status<QString> status = queue.drop();
  output.discard();
  writer.reset();
  return status;
}

}  // namespace kelvarin
