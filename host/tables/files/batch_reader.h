// Reads a table file batch by batch.
//
// Made by a source for one run: open() once, then next() until the end. Warnings and locations are
// asked for when the reading is over.
// Threads: one at a time, except fractionDone().
// Errors: texts for the user, with the location; nothing logs.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "host/tables/files/row_batch.h"

namespace kelvarin {

struct TableColumns {
  QVector<QString> names;
  std::vector<MetaTypeColumn> types;
};

enum class ReadOutcome { rows, end };

class BatchReader {
 public:
  virtual ~BatchReader() = default;
  virtual Result<TableColumns, QString> open() = 0;
  // `batch` has the columns that open() gave. A batch may have no rows before the end.
  virtual Result<ReadOutcome, QString> next(RowBatch& batch) = 0;
  // Of a check, after open() and instead of next(): converts the rows that open() has read.
  virtual Status<QString> tryFirstRows() { return Done{}; }
  // 0 to 1, -1 when unknown; any thread.
  virtual float fractionDone() const = 0;
  // Where a row, counted from 0, stands: "file 'a.csv', line 17".
  virtual QString locationOfRow(long long row) const = 0;
  // What the user should know about the columns; after open(), failed or not.
  virtual QStringList notes() const { return {}; }
  // What was tolerated.
  virtual QStringList warnings() const { return {}; }
  // Ends a waiting next() soon, with an error that nobody shows; any thread.
  virtual void cancel() {}
};

}  // namespace kelvarin
