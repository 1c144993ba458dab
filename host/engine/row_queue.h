// The batches of one output pin for its readers: each takes all of them, in order, at its own pace.
//
// A batch is there once, whatever the number of readers, and whoever has taken it keeps it as long
// as needed. Beyond the memory limit, batches that somebody still has to take lie in a temporary
// file. What all have taken is dropped.
// Used by: row_links.cpp.
// Threads: one.
// Errors: false from push(), null from Reader::next(), and errorText() says why.
#pragma once

#include <cstddef>
#include <list>

#include "host/contract/row_batch.h"
#include "host/engine/execution_options.h"
#include "host/engine/spill_file.h"

namespace kelvarin {

class RowQueue {
 private:
  struct Entry {
    RowBatchPointer batch;  // null while it is on the disk
    std::size_t rowCount;
    std::size_t byteCount;
    int readersToCome;
    long long fileOffset = -1;  // -1 when it is not there
    std::size_t fileSize = 0;
  };
  using Entries = std::list<Entry>;

 public:
  class Reader {
   public:
    // Takes part from the next batch on.
    explicit Reader(RowQueue& queue) : m_queue(queue), m_next(queue.m_entries.end()) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    // Before the first batch of the queue.
    void join();
    bool hasBatch() const;
    // There is one; null: it could not be read.
    RowBatchPointer next();
    // In batches that it has not taken.
    long long rowsWaiting() const { return m_isJoined ? m_queue.m_rowsPushed - m_rowsTaken : 0; }
    // Takes no more.
    void leave();

   private:
    friend class RowQueue;

    RowQueue& m_queue;
    bool m_isJoined = false;
    Entries::iterator m_next;  // the end when all have been taken
    long long m_rowsTaken = 0;
  };

  explicit RowQueue(const ExecutionOptions& options);
  RowQueue(const RowQueue&) = delete;
  RowQueue& operator=(const RowQueue&) = delete;

  // Without readers the batch is dropped.
  [[nodiscard]] bool push(RowBatchPointer batch);
  int readerCount() const { return static_cast<int>(m_readers.size()); }
  long long rowsPushed() const { return m_rowsPushed; }
  // In batches that some reader has not taken.
  long long rowsWaiting() const { return m_rowsWaiting; }
  const QString& errorText() const { return m_spill.errorText(); }

 private:
  bool spill(Entry& entry);
  RowBatchPointer load(Entry& entry);
  void noteTaken(Entries::iterator entry);

  std::size_t m_memoryLimit;
  Entries m_entries;  // the oldest in front
  std::vector<Reader*> m_readers;
  std::vector<MetaTypeColumn> m_types;
  long long m_rowsPushed = 0;
  long long m_rowsWaiting = 0;
  std::size_t m_bytesInMemory = 0;
  int m_entriesOnDisk = 0;
  std::vector<unsigned char> m_bytes;  // of the batch that goes to the disk or comes from there
  SpillFile m_spill;
};

}  // namespace kelvarin
