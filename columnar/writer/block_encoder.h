// Encodes the columns of one column set's blocks, on the worker's thread and on those of a pool.
//
// Each column is encoded as a whole, by whoever comes first, so the bytes do not depend on the
// threads. Made by ColumnSetWorker.
// Layout: docs/gel-format.md, "Column chunks".
// Threads: the worker's; a block is encoded on it and, where threads are permitted, on those of the
// pool.
// Errors: throws only std::bad_alloc.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "base/task_pool.h"
#include "columnar/codecs/chunk_codec.h"
#include "columnar/writer/block_values.h"
#include "columnar/writer/table_layout.h"
#include "columnar/writer/thread_permits.h"

namespace kelvarin {

class BlockEncoder {
 public:
  // One column of a block.
  struct Chunk {
    ByteBuffer bytes;
    std::uint32_t valuesSize = 0;  // before compression, in a full block
  };

  // `firstColumn` is the set's first one in the layout. All references outlive the encoder.
  BlockEncoder(const TableLayout& layout, std::size_t firstColumn, std::size_t columnCount,
               ThreadPermits& permits, TaskPool& helpers);
  ~BlockEncoder();
  BlockEncoder(const BlockEncoder&) = delete;
  BlockEncoder& operator=(const BlockEncoder&) = delete;

  // The calling thread has a permit. The statistics of the columns go into the descriptor.
  void encode(const BlockValues& values, unsigned char* descriptor);
  // Of the last block.
  const std::vector<Chunk>& chunks() const { return m_chunks; }

 private:
  struct Job;
  class Helper;

  void callHelpers(const std::shared_ptr<Job>& job, const BlockValues& values);
  void encodeColumns(Job& job);
  void encodeColumn(const Job& job, std::size_t index, ChunkEncoder& encoder);
  void encodeTexts(const Job& job, std::size_t index, ChunkEncoder& encoder);
  std::unique_ptr<ChunkEncoder> takeEncoder();
  void giveBack(std::unique_ptr<ChunkEncoder> encoder);

  const TableLayout& m_layout;
  const std::size_t m_firstColumn;
  ThreadPermits& m_permits;
  TaskPool& m_helpers;
  std::vector<Chunk> m_chunks;
  std::vector<TextHistory> m_textHistories;  // one a column, used by text columns
  std::mutex m_mutex;
  std::vector<std::unique_ptr<ChunkEncoder>> m_idleEncoders;  // under m_mutex
};

}  // namespace kelvarin
