// Reads a table file piece by piece; the rows of each piece are a batch.
//
// Made by a source for one run: open() once, then readUnit() until the end. Each unit is parsed on
// any thread, and then accepted in the order in which it was read. Warnings and locations are asked
// for when the reading is over.
// Threads: open() and accept() on the engine thread, readUnit() on one thread at a time,
// fractionDone() on any.
// Errors: texts for the user, with the location; nothing logs.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "host/contract/batch_steps.h"

namespace kelvarin {

struct TableColumns {
  QVector<QString> names;
  std::vector<MetaTypeColumn> types;
};

// Which value a failure to read is about, as far as that is known.
struct FaultLocation {
  QString column;
  long long row = -1;  // counted from 0
};

// A failure to read that may be about a column or a value.
struct ReadFault {
  QString text;
  FaultLocation location = {};
};

// A piece of a table file.
class TableUnit : public BatchUnit {
 public:
  // Known when the unit has been accepted: why nothing after batch() can be read. Empty where
  // nothing is wrong.
  const QString& failure() const { return m_failure; }
  const FaultLocation& failureLocation() const { return m_failureLocation; }

 protected:
  void fail(ReadFault fault) {
    m_failure = std::move(fault.text);
    m_failureLocation = std::move(fault.location);
  }

  QString m_failure;
  FaultLocation m_failureLocation;
};

class BatchReader {
 public:
  // Asked from time to time by whoever waits for another program; true ends the waiting. Any
  // thread.
  using IsStopped = std::function<bool()>;

  virtual ~BatchReader() = default;
  // Before open(): how many rows there are is all that counts, so that batches may have no columns
  // and values need not fit.
  virtual void countOnly() {}
  // `isStopped` is for readUnit(), too. When it has answered true, the error is one that nobody
  // shows.
  virtual Result<TableColumns, QString> open(IsStopped isStopped) = 0;
  // Batches have the columns that open() returned. An error of reading is the failure of a unit
  // without rows. Null: the end, however often it is asked.
  virtual std::unique_ptr<TableUnit> readUnit() = 0;
  // A parsed unit whose rows are used: counts what was tolerated in it, and settles its failure.
  virtual void accept(TableUnit& /*unit*/) {}
  // Of a check, after open() and instead of readUnit(): converts the rows that open() has read.
  virtual Status<QString> tryFirstRows() { return Done{}; }
  // After open(): of the whole table, where that is known without reading it; else -1.
  virtual long long rowCount() const { return -1; }
  // After open(): passes over the parts of the file that have nothing but the first `count` rows.
  // Returns how many rows that were.
  virtual long long skipRows(long long /*count*/) { return 0; }
  // 0 to 1, -1 when unknown.
  virtual float fractionDone() const = 0;
  // Where a row, counted from 0, stands: "file 'a.csv', line 17".
  virtual QString locationOfRow(long long row) const = 0;
  // What the user should know about the columns; after open(), failed or not.
  virtual QStringList notes() const { return {}; }
  // What was tolerated.
  virtual QStringList warnings() const { return {}; }
  // What open() has failed at.
  virtual FaultLocation locationOfFailure() const { return {}; }
  // readUnit() may wait for another program.
  virtual bool mayWait() const { return false; }
  // While nobody reads: the next unit comes without waiting.
  virtual bool hasUnitReady() const { return !mayWait(); }
};

}  // namespace kelvarin
