// The two descriptor buffers between the workers of the column sets and the thread that writes
// descriptor records.
//
// Every worker writes its slice of each block's descriptor. A buffer is full when all workers are
// done with its last descriptor; then it becomes a record, and only after that do the workers write
// into it again.
// Threads: one for each worker and one that writes records; stop() and finish() from any. The
// descriptors' bytes belong to the workers, each to its slice, from awaitRoom() to finishBlock(),
// and to the writing thread from awaitRecord() to recordWritten().
#pragma once

#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "base/byte_cursor.h"

namespace kelvarin {

class DescriptorExchange {
 public:
  // `workers` take part. All bytes begin as 0. Throws std::bad_alloc.
  DescriptorExchange(std::size_t workers, std::size_t width, std::size_t descriptorsInRecord);

  // A worker: the descriptor of a block, as soon as its buffer may be written. Null: stopped.
  [[nodiscard]] unsigned char* awaitRoom(std::uint64_t block);
  // The worker's slice of its next block is written, and so is what the slice describes.
  void finishBlock(std::size_t worker);
  // No worker begins another block; the last record may be partly filled.
  void finish();

  // The writing thread: the descriptors of the next record; nothing at the end or when stopped.
  [[nodiscard]] std::optional<Bytes> awaitRecord();
  void recordWritten();

  // Ends every wait, now and later.
  void stop();

 private:
  static constexpr std::uint64_t kBuffers = 2;
  struct Free {
    void operator()(unsigned char* memory) const { std::free(memory); }
  };

  // Blocks that all workers have finished.
  std::uint64_t finishedBlocks() const;
  unsigned char* descriptor(std::uint64_t block) const;

  const std::size_t m_width;
  const std::uint64_t m_descriptorsInRecord;
  // Zero pages until they are written, so that a wide table with few blocks takes little memory.
  const std::unique_ptr<unsigned char, Free> m_buffers;

  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_changed;
  std::vector<std::uint64_t> m_finished;  // blocks, one entry a worker
  std::uint64_t m_writtenRecords = 0;
  bool m_isFinished = false;
  bool m_isStopped = false;
};

}  // namespace kelvarin
