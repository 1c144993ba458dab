// Reads batches on a thread of its own, some ahead of the consumer.
//
// A few batches change hands: the consumer works on one while the thread fills others.
// Threads: next() and stop() on the consumer's thread; the members below the mutex belong to it.
// Batches that are not filled and not the consumer's belong to the reading thread.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "host/tables/files/batch_reader.h"

namespace kelvarin {

class ReadAhead {
 public:
  ReadAhead(BatchReader& reader, const std::vector<MetaTypeColumn>& types);
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  // The following batch; the one given before is filled anew. Null at the end, after a failure, and
  // when `mayWait` answers false.
  RowBatch* next(const std::function<bool()>& mayWait);
  // Why the reading ended early; empty at a normal end.
  const QString& failure() const { return m_failure; }
  // The thread has ended when this returns.
  void stop();

 private:
  static constexpr std::size_t kBatchCount = 4;

  void run();
  bool waitForEmptyBatch();
  // The consumer has the batch before the next one.
  std::size_t released() const { return m_taken == 0 ? 0 : m_taken - 1; }

  BatchReader& m_reader;
  RowBatch m_batches[kBatchCount];
  QString m_failure;  // written before `m_hasEnded`

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
