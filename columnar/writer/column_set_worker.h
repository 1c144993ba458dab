// Encodes and stores the blocks of one column set on a thread of its own.
//
// Each block is encoded column by column (block_encoder.h), its slice of the descriptor is written,
// and the chunks are appended to the side file. Two buffers circulate through two queues: the
// filling thread fills one while the worker stores the other. Made by ColumnarHDWriter.
// Layout: docs/gel-format.md, "Blocks of rows".
// Threads: the worker's own between start() and join(); all public operations on the filling
// thread.
// Errors: reported to the FirstFailure; all waits of this set and of the descriptors then end.
#pragma once

#include <array>
#include <thread>
#include <vector>

#include "base/bounded_queue.h"
#include "columnar/writer/block_encoder.h"
#include "columnar/writer/descriptor_double_buffer.h"
#include "columnar/writer/growing_file.h"

namespace kelvarin {

// What the workers of a file share.
struct WorkerSurroundings {
  const TableLayout& layout;
  DescriptorDoubleBuffer& descriptors;
  ThreadPermits& permits;
  TaskPool& helpers;
  FirstFailure& failure;
};

class ColumnSetWorker {
 public:
  // `index` counts the sets that have columns; `firstColumn` and `columnCount` say which ones. The
  // memory for the values is taken here: throws std::bad_alloc.
  ColumnSetWorker(const WorkerSurroundings& surroundings, std::size_t index,
                  std::size_t firstColumn, std::size_t columnCount, AskAboutFullDisk ask);
  ~ColumnSetWorker();
  ColumnSetWorker(const ColumnSetWorker&) = delete;
  ColumnSetWorker& operator=(const ColumnSetWorker&) = delete;

  Status<QString> open(const QString& sideFile);
  void start();
  // After finish() or stop().
  void join();

  // The buffer to fill.
  BlockValues& values() { return *m_filling; }
  // The buffer is full and goes to the worker; awaitBuffer() must follow.
  void submitBlock(std::uint32_t rows);
  // Waits until a buffer is free, and with it until all blocks but the last submitted one are
  // stored. False: stopped.
  [[nodiscard]] bool awaitBuffer();
  // No more blocks follow.
  void finish() { m_filled.finish(); }
  // Ends every wait, now and later. On any thread.
  void stop();

  std::size_t firstColumn() const { return m_firstColumn; }
  int columnSet() const { return m_columnSet; }
  GrowingFile& sideFile() { return m_sideFile; }

  // The end of a stored block in the side file; one of the last few.
  std::uint64_t endOfBlock(std::uint64_t block) const { return m_blockEnds[block % kKeptEnds]; }

  // After join(): the largest chunk of each column, and the largest values before compression.
  const std::vector<std::uint32_t>& largestChunks() const { return m_largestChunks; }
  const std::vector<std::uint32_t>& largestValues() const { return m_largestValues; }

 private:
  static constexpr std::size_t kBuffers = 2;
  static constexpr std::size_t kKeptEnds = 4;

  void run();
  [[nodiscard]] bool storeBlocks();
  [[nodiscard]] bool storeBlock(std::uint64_t block, const BlockValues& values);
  // Puts the chunks one after another.
  void joinChunks(std::uint32_t rows, unsigned char* descriptor);

  const WorkerSurroundings m_surroundings;
  const std::size_t m_index;
  const std::size_t m_firstColumn;
  const int m_columnSet;
  GrowingFile m_sideFile;
  std::array<BlockValues, kBuffers> m_buffers;
  BlockValues* m_filling = m_buffers.data();      // the filling thread's
  BoundedQueue<BlockValues*> m_filled{kBuffers};  // to the worker
  BoundedQueue<BlockValues*> m_free{kBuffers};    // back to the filling thread

  // The worker's thread only, until it is joined.
  BlockEncoder m_encoder;
  ByteBuffer m_chunks;
  std::vector<std::uint64_t> m_positions;  // of the chunks in m_chunks
  std::vector<std::uint32_t> m_largestChunks;
  std::vector<std::uint32_t> m_largestValues;
  std::array<std::uint64_t, kKeptEnds> m_blockEnds{};  // an entry is read after awaitBuffer()

  std::thread m_thread;
};

}  // namespace kelvarin
