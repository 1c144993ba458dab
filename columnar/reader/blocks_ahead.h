// Reads events on a thread of its own, some blocks ahead of the consumer.
//
// Small blocks are handed over several at a time: each counts less than what a hand-over costs.
// Blocks that the consumer has used up go back to be filled again.
// Threads: the consumer calls everything; `produce` runs on the reading thread, or with no block
// ahead on the consumer's.
// Errors: events; an exception of `produce` is thrown by next().
#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "columnar/reader/hand_over.h"
#include "columnar/reader/read_event.h"

namespace kelvarin {

class BlocksAhead {
 public:
  // Gives the next event; `spare` may be filled for it, and is null when there is none.
  using Produce = std::function<ReadEvent(std::unique_ptr<DecodedBlock> spare)>;

  // Below 1: nothing is read ahead.
  BlocksAhead(Produce produce, int blocksAhead);
  ~BlocksAhead();
  BlocksAhead(const BlocksAhead&) = delete;
  BlocksAhead& operator=(const BlocksAhead&) = delete;

  // Waits for the next event. After the last one the events are `end`.
  ReadEvent next();
  void giveBack(std::unique_ptr<DecodedBlock> block);

 private:
  // One block, or small ones and damages that follow one another.
  using Events = std::vector<ReadEvent>;

  void run();
  void handOverAll();
  Events produceSome();
  ReadEvent takeEvent();
  std::unique_ptr<DecodedBlock> takeSpare();

  const Produce m_produce;
  std::mutex m_spareMutex;
  std::vector<std::unique_ptr<DecodedBlock>> m_spares;  // under m_spareMutex
  std::optional<HandOver<Events>> m_handOver;           // none when nothing is read ahead
  Events m_taken;                                       // the consumer's
  std::size_t m_nextTaken = 0;
  bool m_isFinished = false;      // the consumer has seen the last event
  std::exception_ptr m_exception;  // of the reading thread, until it has finished
  std::thread m_thread;
};

}  // namespace kelvarin
