// The rows of one output pin for its readers: each takes all of them, in order, at its own pace.
//
// A row is copied in once, whatever the number of readers, and lies in a batch. A batch stays in
// memory as long as a reader stands in it, so a row that a reader has taken stays what it is until
// that reader takes its next one or releases it, whatever the producer and the other readers do
// meanwhile. Beyond the memory limit, batches that nobody stands in and somebody still has to read
// lie in a temporary file. What all have read is dropped. Used by: row_links.cpp.
// Threads: one.
// Errors: false from push() and Reader::next(), and errorText() says why.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>

#include "host/engine/execution_options.h"
#include "host/engine/queue_batch.h"
#include "host/engine/spill_file.h"

namespace kelvarin {

class RowQueue {
 private:
  struct Batch {
    QueueBatch rows;
    int readersToCome = 0;      // have not entered it yet
    int readersInside = 0;      // last took one of its rows
    long long fileOffset = -1;  // of its rows in the temporary file; -1 when they are not there
  };
  using Batches = std::list<Batch>;

 public:
  class Reader {
   public:
    // Takes part from the next row on.
    explicit Reader(RowQueue& queue) : m_queue(queue), m_batch(queue.m_batches.end()) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    // Before the first row of the queue.
    void join();
    bool hasRow() const;
    // Points `values` at the next row; there is one.
    [[nodiscard]] bool next(unsigned char** values);
    // The row taken last and those after it in its batch.
    RowsAhead rowsAhead() const;
    // Takes no more rows. The one taken last stays.
    void leave();
    // The row taken last is not looked at any more; after leave().
    void release();

   private:
    bool isInside() const { return m_batch != m_queue.m_batches.end(); }
    Batches::iterator nextBatch() const {
      return isInside() ? std::next(m_batch) : m_queue.m_batches.begin();
    }
    [[nodiscard]] bool enterNextBatch();

    RowQueue& m_queue;
    bool m_isJoined = false;
    Batches::iterator m_batch;            // the one that the row taken last is in
    std::size_t m_rowsTaken = 0;          // of the batch
    unsigned char* m_position = nullptr;  // of the next row in it
  };

  explicit RowQueue(const ExecutionOptions& options);
  RowQueue(const RowQueue&) = delete;
  RowQueue& operator=(const RowQueue&) = delete;

  // All rows of a queue have the columns of its first. Without readers the row is dropped.
  [[nodiscard]] bool push(const OneRow& row);
  // Of the batches that some reader has not come to, in memory and on disk.
  long long bytesWaiting() const { return m_bytesWaiting; }
  const QString& errorText() const { return m_spill.errorText(); }

 private:
  bool startBatch(std::size_t rowSize);
  std::size_t nextCapacity() const;
  std::unique_ptr<unsigned char[]> takeMemory(std::size_t capacity);
  bool spill(Batch& batch);
  bool load(Batch& batch);
  void unload(Batch& batch);
  void noteArrival(Batch& batch);
  void dropWhenRead(Batches::iterator batch);

  std::size_t m_memoryLimit;
  std::optional<RowLayout> m_layout;
  Batches m_batches;  // the oldest in front; the one being filled at the back
  int m_readerCount = 0;
  std::size_t m_bytesInMemory = 0;
  long long m_bytesWaiting = 0;
  int m_batchesOnDisk = 0;
  SpillFile m_spill;
};

}  // namespace kelvarin
