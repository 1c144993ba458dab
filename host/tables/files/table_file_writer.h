// Makes the bytes of one file of a table, in one format.
//
// Used by: the sinks; each format has its own.
// Threads: one at a time.
// Errors: texts for the user; nothing logs.
#pragma once

#include <memory>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "host/contract/batch_steps.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class TableFileWriter {
 public:
  virtual ~TableFileWriter() = default;
  // `columns` has the names and types of all rows to come.
  virtual Status<QString> begin(const OneRow& columns) = 0;
  // `rows` are of the format's encoder.
  virtual Status<QString> write(std::unique_ptr<EncodedBatch> rows) = 0;
  virtual Status<QString> finish() = 0;
  // After finish(): what was tolerated.
  virtual QStringList warnings() const { return {}; }
};

}  // namespace kelvarin
