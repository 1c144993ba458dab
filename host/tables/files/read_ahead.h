// Reads batches on a thread of its own, one ahead of the consumer.
//
// Two batches change hands: the consumer works on one while the thread fills the other.
// Threads: next() and stop() on the consumer's thread; the members below the mutex belong to it,
// the batch in `m_filling` to the reading thread.
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
  enum class State { filling, full, ended };

  void run();
  bool waitForEmptyBatch();

  BatchReader& m_reader;
  RowBatch m_batches[2];
  int m_filling = 0;
  QString m_failure;  // written before the state becomes `ended`

  std::mutex m_mutex;
  std::condition_variable m_changed;
  State m_state = State::filling;
  bool m_isStopping = false;

  std::thread m_thread;
};

}  // namespace kelvarin
