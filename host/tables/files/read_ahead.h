// Opens a reader and reads its batches on a thread of its own, some ahead of the consumer.
//
// A few batches go around: the consumer works on one while the thread fills others. Whoever waits
// for the thread looks from time to time whether it still may, so that a run ends soon although its
// source waits for another program.
// Threads: all operations on the consumer's thread; the members below the mutex belong to it.
// Batches that are not filled and not the consumer's belong to the reading thread.
// Errors: the reader's texts. An exception of the reader is thrown on the consumer's thread.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "host/contract/action_item.h"
#include "host/tables/files/batch_reader.h"

namespace kelvarin {

class ReadAhead {
 public:
  // Asked while the consumer waits; false ends the waiting.
  using MayWait = std::function<bool()>;

  // `action` is the one in whose name the thread logs.
  ReadAhead(BatchReader& reader, const ActionItem* action);
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  // First. When `mayWait` has answered false, the error is one that nobody shows.
  Result<TableColumns, QString> open(const MayWait& mayWait);
  // Begins to read; `types` are those of the columns.
  void start(const std::vector<MetaTypeColumn>& types);
  // The following batch; the one given before is filled anew. Null at the end, after a failure, and
  // when `mayWait` answers false.
  RowBatch* next(const MayWait& mayWait);
  // Why the reading ended early; empty at a normal end.
  const QString& failure() const { return m_failure; }
  // The thread has ended when this returns.
  void stop();

 private:
  static constexpr std::size_t kBatchCount = 4;

  // Runs `work` on the thread.
  void run(std::function<void()> work);
  void readBatches();
  bool waitForEmptyBatch();
  bool waitForEnd(const MayWait& mayWait);
  void rethrow();
  // The consumer has the batch before the next one.
  std::size_t released() const { return m_taken == 0 ? 0 : m_taken - 1; }

  BatchReader& m_reader;
  const ActionItem* m_action;
  RowBatch m_batches[kBatchCount];
  QString m_failure;               // written before `m_hasEnded`, as the next
  std::exception_ptr m_exception;  // of the thread

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::size_t m_filled =
      0;  // batches; written by the reading thread, which may read it without lock
  std::size_t m_taken = 0;
  bool m_hasEnded = false;
  bool m_isStopping = false;

  std::thread m_thread;
};

}  // namespace kelvarin
