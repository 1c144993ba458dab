// The ways in which rows go from an output pin to an input pin.
//
// Whatever the producer publishes, batches or single rows, a link hands it to its consumer in the
// form in which that asks for it. A straight link makes the producer go on and passes on what it
// publishes: nobody else can make the producer, or anything between it and the next fork above, go
// on meanwhile. Where rows of an action go to more than one reader, a fork puts them into a queue,
// and each reader takes them from there; so nothing below a fork shows values that belong to
// actions above it.
// Used by: graph_execution.cpp, sink_schedule.cpp, running_action.cpp.
// Threads: the engine thread.
#pragma once

#include <algorithm>
#include <climits>
#include <deque>
#include <optional>
#include <vector>

#include "host/contract/batch_collector.h"
#include "host/contract/batch_rows.h"
#include "host/contract/pin_ports.h"
#include "host/engine/batch_pipeline.h"
#include "host/engine/batch_trail.h"
#include "host/engine/row_queue.h"
#include "host/engine/running_action.h"

namespace kelvarin {

class RowLink : public InputPin {
 public:
  RowLink(RunningAction& producer, int pin, RunningAction& consumer,
          const ExecutionOptions& options);

  const OneRow* next() override;
  TakenBatch nextBatch() override;
  const OneRow* announcedColumns() override { return m_pin.isAnnounced ? &m_pin.row : nullptr; }
  ActionItem* upstreamAction() const override { return &m_producer.item(); }
  RunningAction& producer() const { return m_producer; }
  RunningAction& consumer() const { return m_consumer; }
  int pinIndex() const { return m_pinIndex; }
  virtual bool isQueue() const { return false; }
  virtual bool isStraight() const { return false; }
  // Those that have been taken at the end of the chain.
  long long rowsRead() const { return m_rowsRead; }

  // For transforms: the rows of a batch that have not been taken; null where a single row comes
  // next, or none.
  RowBatchPointer batchAtWork();
  // Of these, the first `count` have been transformed.
  void pass(std::size_t count);
  const BatchTrailPointer& trail() const { return m_trail; }
  std::size_t rowsTakenOfBatch() const { return m_rows.rowsTaken(); }
  // By the consumer itself, from the first row on.
  long long rowsTaken() const { return m_rowsTaken; }
  // Nothing has been published and not been taken.
  virtual bool isDrained() const { return !hasBatch(); }

  // For chains: a batch that comes without anybody having to go on for it.
  virtual bool isBatchAvailable() const { return false; }
  // What batchAtWork() would be, with its trail. It is not taken before passBatch(), in order, or
  // comes back.
  PublishedBatch borrowBatch();
  void passBatch(const BatchTrailPointer& trail, std::size_t rows);
  void putBack(RowBatchPointer batch, BatchTrailPointer trail);
  // All rows of the batch at work have been taken, and its consumer asks for what comes after.
  void askOn();
  // The chain that has borrowed batches.
  ActionChain* borrower() const { return m_borrower; }
  void setBorrower(ActionChain* chain) { m_borrower = chain; }

  // There are rows to take without anybody having to make more.
  bool hasRowsReady() const;
  // Of a queue: the rows that its consumer waited for ended with the failure of the run.
  virtual bool endsWithFailure() const { return false; }

  // Batches are encoded for the consumer, which has not taken them.
  bool hasPending() const { return m_encoding != nullptr && !m_encoding->isEmpty(); }
  // What encodes batches uses its tasks; before close().
  void stopEncoding() { m_encoding.reset(); }
  // The rows that were taken count, at the end of the run; those that went on from here count where
  // they have arrived.
  void settleAtEnd();

  // How many rows the consumer may still take in its turn.
  static constexpr std::size_t kNoLimit = LONG_MAX;
  void setRowLimit(std::size_t rows) { m_rowLimit = rows; }
  std::size_t rowLimit() const { return m_rowLimit; }

 protected:
  enum class Supply { batch, row, end };

  // Waits for something to take.
  virtual Supply fetch() = 0;
  // The row that fetch() has found.
  virtual const OneRow* takeRow() = 0;

  bool hasBatch() const { return m_rows.rowsLeft() > 0; }
  void startBatch(PublishedBatch published);
  bool takeBorrowedBatch();
  const OneRow* rowOfBatch();
  void settle();
  void noteTaken(std::size_t count) {
    m_rowsTaken += static_cast<long long>(count);
    m_rowLimit -= std::min(m_rowLimit, count);
  }

  RunningAction& m_producer;
  RunningAction& m_consumer;
  const int m_pinIndex;
  OutputPin& m_pin;
  const BatchSize m_batchSize;
  ActionChain* m_borrower = nullptr;
  long long m_rowsRead = 0;
  BatchRows m_rows;
  BatchTrailPointer m_trail;  // of these

 private:
  TakenBatch takeBatch();
  TakenBatch takeEncodedBatch();
  void encodeAhead();
  const RunningAction* waitingSource() const;
  bool mayHaveToWait() const;

  std::unique_ptr<EncodedBatch> m_encoded;  // the batch as a whole
  bool m_isPassed = false;                  // some of its rows were transformed
  bool m_hasLateTexts = false;              // the batch, until its rows are taken one by one
  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  bool m_hasColumns = false;
  std::optional<BatchCollector> m_collector;
  bool m_isBelowWaitingSource = false;  // as long as rows are being collected
  long long m_rowsTaken = 0;
  std::size_t m_rowLimit = kNoLimit;
  std::unique_ptr<BatchPipeline> m_encoding;  // of batches that come without
  TakenBatch m_afterEncoding;                 // a batch that came encoded meanwhile
  bool m_isInputOver = false;
};

class StraightLink final : public RowLink {
 public:
  using RowLink::RowLink;
  bool isStraight() const override { return true; }
  bool isDrained() const override;
  bool isBatchAvailable() const override;

 private:
  Supply fetch() override;
  const OneRow* takeRow() override;
};

// Has the producer's columns, once it has announced them, and no rows.
class ColumnsLink final : public RowLink {
 public:
  using RowLink::RowLink;

 private:
  Supply fetch() override;
  const OneRow* takeRow() override { return nullptr; }
};

class Fork;

// Asked for help where rows pile up for readers that could run.
class CongestionRelief {
 public:
  virtual ~CongestionRelief() = default;
  void ask(Fork& congested) { m_congested.push_back(&congested); }
  void relieveWhenAsked() {
    if (!m_congested.empty()) [[unlikely]] {
      relieve();
    }
  }

 protected:
  std::vector<Fork*> m_congested;

 private:
  virtual void relieve() = 0;
};

class QueueLink final : public RowLink {
 public:
  QueueLink(RunningAction& producer, int pin, RunningAction& consumer, Fork& fork,
            const ExecutionOptions& options);

  bool isQueue() const override { return true; }
  bool endsWithFailure() const override { return m_endsWithFailure; }
  bool isBatchAvailable() const override { return m_reader.hasBatch(); }
  bool wasAsked() const { return m_wasAsked; }
  long long rowsWaiting() const { return m_isLetGo ? 0 : m_reader.rowsWaiting(); }
  // The consumer takes no more rows. What it makes of the last one may still be read.
  void letGo();
  // That is not read any more either.
  void release();

 private:
  Supply fetch() override;
  const OneRow* takeRow() override { return nullptr; }
  bool waitForBatch();
  bool askAgain();

  Fork& m_fork;
  RowQueue::Reader m_reader;
  bool m_wasAsked = false;
  bool m_isLetGo = false;
  bool m_endsWithFailure = false;
};

// Where the rows of one output pin go to several readers, or wait for the reader of another pin.
//
// A reader that has none left makes the producer go on until there is a fixed number more, however
// many it publishes at a time; so the order in which actions work does not depend on that.
class Fork final : public RowReceiver {
 public:
  // `isOnly`: the producer's rows go nowhere else.
  Fork(RunningAction& producer, OutputPin& pin, bool isOnly, const ExecutionOptions& options,
       CongestionRelief& relief);

  void addReader(QueueLink* reader) { m_readers.push_back(reader); }
  const std::vector<QueueLink*>& readers() const { return m_readers; }
  RowQueue& queue() { return m_queue; }
  CongestionRelief& relief() { return m_relief; }
  void receive(const OneRow& row) override;
  void receive(const RowBatchPointer& batch) override;
  // The same, with the way that the batch has come.
  void receive(const PublishedBatch& published);
  // Has more rows made. False: there are none.
  bool makeRows();
  // Its readers have been helped as far as they could be.
  void noteRelief();

 private:
  struct Held {
    RowBatchPointer batch;
    BatchTrailPointer trail;  // null: counted already
    std::size_t rowsReleased = 0;
  };

  std::size_t rowsInStep();
  bool advanceProducer();
  void release(std::size_t rows);
  void closeCollector();
  void askRelief();

  RunningAction& m_producer;
  OutputPin& m_pin;
  const bool m_isOnly;
  const ExecutionOptions& m_options;
  RowQueue m_queue;
  CongestionRelief& m_relief;
  std::vector<QueueLink*> m_readers;
  std::optional<BatchCollector> m_collector;
  std::deque<Held> m_held;        // published, and not given to the readers yet
  BatchTrailPointer m_lastTrail;  // of the batch after which the producer has not gone on
  std::size_t m_rowsHeld = 0;
  std::size_t m_rowsInStep = 0;
  long long m_rowsToAskRelief = 0;
};

}  // namespace kelvarin
