// The rows that reach a sink of a run, for whoever pulls them on another thread: a bounded queue,
// for which the run waits when it is full.
//
// Used by: graph_run.cpp.
// Threads: the receiver's operations on the engine thread, the supply's on the reader's; endRun()
// and stop() on any.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>

#include "base/bounded_queue.h"
#include "library/arrow_streams/output_stream.h"
#include "library/runs/stream_sink.h"

namespace kelvarin {

class StreamQueue final : public BatchReceiver {
 public:
  void begin(const TableColumns& columns) override;
  bool take(std::vector<OwnedArray> arrays) override;
  void end() override;

  // The run has begun; before, nothing can be pulled.
  void beginRun();
  // The run is over, perhaps with an error; whatever has not been pulled stays.
  void endRun(std::optional<ErrorDetails> error);
  // Nobody pulls any more, or the run is to end: whoever waits goes on.
  void stop();

  Outcome<TableColumns> awaitColumns();
  Outcome<OwnedArray> next();

 private:
  // When there are no more rows: why they are not all. Waits for the end of a run that is ending.
  std::optional<ErrorDetails> awaitError();

  BoundedQueue<OwnedArray> m_arrays{8};
  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_changed;
  std::optional<TableColumns> m_columns;
  bool m_hasBegun = false;
  bool m_isComplete = false;  // all rows of the sink have come
  bool m_isStopped = false;   // and those that waited are gone
  bool m_isOver = false;
  std::optional<ErrorDetails> m_error;
};

// The stream of a queue; destroying it lets the run drop the rows.
class QueuedStream final : public BatchSupply {
 public:
  explicit QueuedStream(std::shared_ptr<StreamQueue> queue) : m_queue(std::move(queue)) {}
  ~QueuedStream() override { m_queue->stop(); }
  QueuedStream(const QueuedStream&) = delete;
  QueuedStream& operator=(const QueuedStream&) = delete;

  Outcome<TableColumns> columns() override { return m_queue->awaitColumns(); }
  Outcome<OwnedArray> next() override { return m_queue->next(); }

 private:
  std::shared_ptr<StreamQueue> m_queue;
};

}  // namespace kelvarin
