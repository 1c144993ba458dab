// What an action can do with whole batches: read, transform or encode them.
//
// An action that can derives from one of these beside ActionItem; the host finds out by a cast.
// Whatever such an action does with a batch has the results that its row routine has row by row,
// and where a batch cannot, it stops before the row in question, which then goes through the row
// routine. So messages, counts and order are those of single rows.
// Threads: said at each operation. Tasks run on any thread and at the same time as one another;
// they log nothing and change nothing but what they return.
// Errors: exceptions (memory) pass to the engine.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include <QString>

#include "base/export.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

// A piece of a source's input, as it was read; parsing it yields rows.
class KELVARIN_CORE BatchUnit {
 public:
  virtual ~BatchUnit();
  // Decodes the rows. A task, once a unit.
  virtual void parse() = 0;
  // After parse(): the rows before the first one that is in error; null where there are none.
  const RowBatchPointer& batch() const { return m_batch; }
  // About as much memory as the unit takes, before parse().
  virtual std::size_t byteCount() const = 0;
  // The number of its first row among all that the source makes, if none of those before is
  // damaged; -1: not known. Before parse(), too.
  virtual std::int64_t expectedRow() const { return -1; }

 protected:
  RowBatchPointer m_batch;
};

// An action that publishes the rows of units on its first output pin.
//
// Its row routine opens the input and announces the columns at its first call. From then on the
// host reads units as long as canReadUnits(), and calls the routine again only when there is none
// any more; it then answers true.
class KELVARIN_CORE BatchSource {
 public:
  virtual ~BatchSource();
  // Engine thread. False: not opened yet, failed, or at the end.
  virtual bool canReadUnits() const = 0;
  // The next piece; null: there is none for now. One thread at a time.
  virtual std::unique_ptr<BatchUnit> readUnit() = 0;
  // Engine thread, for every unit that was parsed, in their order: judges what was read, logs its
  // errors and fails the run. Returns the rows that count, most often unit.batch() itself; null for
  // none.
  virtual RowBatchPointer accept(BatchUnit& unit) = 0;
  // Engine thread, when readUnit() has returned null and all units have been accepted: goes on with
  // the next input, where there is one. False: the end.
  virtual bool readOn() { return false; }
  // Any thread, asked again after readOn(). Of the units that were read, how many may not have been
  // accepted yet; 0: each is read when the rows of the previous one have been taken.
  virtual int maxUnitsAhead() const { return std::numeric_limits<int>::max(); }
  // Engine thread, at any time. From now on columns of units may have late texts.
  virtual void allowLateTexts() {}
  // readUnit() may wait for another program, which then needs a thread of its own.
  virtual bool mayWait() const { return false; }
  // While nobody reads: the next unit comes without waiting.
  virtual bool hasUnitReady() const { return !mayWait(); }
};

// What a stage has counted in a result; its action knows the type.
class KELVARIN_CORE StageCounts {
 public:
  virtual ~StageCounts();
};

// What became of the first rows of a batch.
struct StageResult {
  static constexpr std::size_t kMaxPins = 2;

  // Rows of the input that are done. Fewer than there are: the rest comes with the next call. None:
  // the first row cannot be done so.
  std::size_t rowsDone = 0;
  // The rows for each output pin; null for none.
  std::array<RowBatchPointer, kMaxPins> outputs;
  // Of each output's rows, the rows of the input that they came from; null where they are all rows
  // in order.
  std::array<RowSelection, kMaxPins> inputRows;
  // For countRows(), where all rows are taken; null: nothing was counted.
  std::shared_ptr<const StageCounts> counts;
};

// How an action transforms batches in one run, compiled.
class KELVARIN_CORE BatchStage {
 public:
  virtual ~BatchStage();
  // A task. `firstRow` is the number of the batch's first row at the action's pin; it is -1 where
  // the stage does not need it.
  virtual StageResult process(const RowBatch& batch, long long firstRow) const = 0;
  // False: process() would stop early, since the result of all rows would take much memory.
  virtual bool processesWhole(const RowBatch& /*batch*/) const { return true; }
  // Its expressions depend on the number of the row.
  virtual bool needsRowNumbers() const = 0;
  // Gains by columns with late texts. Its outputs have none.
  virtual bool takesLateTexts() const { return false; }
};

// An action that transforms the rows of its first input pin. All on the engine thread.
class KELVARIN_CORE BatchTransform {
 public:
  virtual ~BatchTransform();
  // Null: row by row. Asked when the action's first row has been computed; the answer may change
  // after a row that went through the routine. The stage lives until the action is closed.
  virtual const BatchStage* stage() const = 0;
  // The stage has done so many rows, which come before the next row of the routine.
  virtual void passRows(std::size_t count) = 0;
  // Of the rows of a result, those of the input from `begin` to before `end` have been taken by the
  // consumer; for the counts of the report.
  virtual void countRows(const StageResult& /*result*/, std::size_t /*begin*/,
                         std::size_t /*end*/) {}
};

// A batch in the form in which a sink writes it.
class KELVARIN_CORE EncodedBatch {
 public:
  virtual ~EncodedBatch();
};

// Encodes the batches of one sink.
class KELVARIN_CORE BatchEncoder {
 public:
  virtual ~BatchEncoder();
  // A task.
  virtual std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const = 0;
  // The same for rows of a source that come without a step in between; see
  // BatchUnit::expectedRow().
  virtual std::unique_ptr<EncodedBatch> encodeAt(const RowBatch& batch,
                                                 std::int64_t /*expectedRow*/) const {
    return encode(batch);
  }
};

// An action without output pins that takes the rows of its first input pin as batches, with
// ActionItem::getNextBatchFromInPin(). Engine thread.
class KELVARIN_CORE BatchSink {
 public:
  virtual ~BatchSink();
  // Null: batches are taken as they are. Asked after the first batch has been taken; lives until
  // the action is closed.
  virtual const BatchEncoder* encoder() const { return nullptr; }
};

// Rows that a sink has taken.
struct TakenBatch {
  RowBatchPointer batch;                  // null: there are no more
  std::unique_ptr<EncodedBatch> encoded;  // null: nobody has encoded it yet
};

}  // namespace kelvarin
