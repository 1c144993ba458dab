// Reads events on a thread of its own, some blocks ahead of the consumer.
//
// Small blocks pass the queue in batches, since passing one costs more than reading it. Blocks that
// the consumer has used up are filled again.
// Threads: all operations on the consumer's; `produce` runs on the reading thread, or on the
// consumer's when nothing is read ahead.
// Errors: events; an exception of `produce` is thrown by next().
#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "base/bounded_queue.h"
#include "columnar/reader/read_event.h"

namespace kelvarin {

class BlocksAhead {
 public:
  // Returns the next event. `spare` is a block to fill again, or null.
  using Produce = std::function<ReadEvent(std::unique_ptr<DecodedBlock> spare)>;

  // Below 1: nothing is read ahead.
  BlocksAhead(Produce produce, int blocksAhead);
  ~BlocksAhead();
  BlocksAhead(const BlocksAhead&) = delete;
  BlocksAhead& operator=(const BlocksAhead&) = delete;

  // Waits for the next event. After the last one the events are `end`.
  ReadEvent next();
  void recycle(std::unique_ptr<DecodedBlock> block);

 private:
  // One block, or several small ones and damages.
  using Batch = std::vector<ReadEvent>;

  void run();
  void produceAll();
  Batch produceBatch();
  ReadEvent takeEvent();
  std::unique_ptr<DecodedBlock> takeSpare();

  const Produce m_produce;
  std::mutex m_spareMutex;
  std::vector<std::unique_ptr<DecodedBlock>> m_spares;  // under m_spareMutex
  std::optional<BoundedQueue<Batch>> m_queue;           // none when nothing is read ahead
  Batch m_batch;                                        // the consumer's
  std::size_t m_nextInBatch = 0;
  bool m_isFinished = false;       // the consumer has seen the last event
  std::exception_ptr m_exception;  // of the reading thread, until it has finished
  std::thread m_thread;
};

}  // namespace kelvarin
