// The two buffers between the thread that fills blocks and the worker that stores them.
//
// One side fills a buffer, hands it over and goes on with the other one, waiting only while the
// worker still has that. Only the turn-taking is here: the buffers belong to the worker's record.
// Threads: one filling thread and one worker; stop() from any.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace kelvarin {

class BlockHandOver {
 public:
  static constexpr std::uint64_t kBuffers = 2;

  // The filling side. Blocks are numbered from 0; block b lies in buffer b % kBuffers.
  // The next block is full.
  void handOver();
  // Waits until the buffer of the next block is free. False: stopped.
  [[nodiscard]] bool awaitFree();
  // Waits until the worker has released so many blocks. False: stopped before.
  [[nodiscard]] bool awaitReleased(std::uint64_t blocks);
  // No more blocks come.
  void finish();

  // The worker's side: the number of the next full block; nothing at the end or when stopped.
  [[nodiscard]] std::optional<std::uint64_t> awaitFilled();
  void release();

  // Ends every wait, now and later.
  void stop();

 private:
  std::mutex m_mutex;  // guards all members
  std::condition_variable m_changed;
  std::uint64_t m_filled = 0;
  std::uint64_t m_released = 0;
  bool m_isFinished = false;
  bool m_isStopped = false;
};

}  // namespace kelvarin
