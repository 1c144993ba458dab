// The double buffer of descriptors between the workers of the column sets and the thread that
// writes descriptor records.
//
// Every worker writes its slice of each block's descriptor. A buffer is full when all workers have
// finished its last descriptor. Then it is written as a record, and the workers fill it again.
// Threads: one for each worker and one that writes records; stop() and finish() on any. A worker
// owns its slice of a descriptor from awaitDescriptor() to finishBlock(), the writing thread owns a
// record from awaitRecord() to recordWritten().
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "base/byte_cursor.h"

namespace kelvarin {

class DescriptorDoubleBuffer {
 public:
  // Throws std::bad_alloc.
  DescriptorDoubleBuffer(std::size_t workers, std::size_t width, std::size_t descriptorsInRecord);

  // A worker waits until the buffer of the block's descriptor may be written, whose bytes are 0 for
  // the first one that comes. Null: stopped.
  [[nodiscard]] unsigned char* awaitDescriptor(std::uint64_t block);
  // The worker has written its slice of the block's descriptor, and the chunks that it describes.
  void finishBlock(std::size_t worker);
  // No more blocks follow; the last record may be partly filled.
  void finish();

  // The writing thread waits for the descriptors of the next record. Nothing: at the end, or
  // stopped.
  [[nodiscard]] std::optional<Bytes> awaitRecord();
  void recordWritten();

  // Ends every wait, now and later.
  void stop();

 private:
  static constexpr std::uint64_t kBuffers = 2;

  // Blocks that all workers have finished.
  std::uint64_t finishedBlocks() const;
  unsigned char* descriptor(std::uint64_t block) const;

  const std::size_t m_width;
  const std::uint64_t m_descriptorsInRecord;
  // Untouched pages take no memory, so a wide table with few blocks takes little: descriptors are
  // cleared one by one.
  const std::unique_ptr<unsigned char[]> m_buffers;

  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_changed;
  std::vector<std::uint64_t> m_finished;  // blocks, one entry a worker
  std::uint64_t m_clearedBlocks = 0;
  std::uint64_t m_writtenRecords = 0;
  bool m_isFinished = false;
  bool m_isStopped = false;
};

}  // namespace kelvarin
