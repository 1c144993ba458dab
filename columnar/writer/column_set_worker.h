// One column set of a file that is written: its side file, the blocks that are filled and stored,
// and the thread that stores them.
//
// A block is encoded chunk by chunk, its slice of the descriptor is written, and then the chunks
// are appended to the side file. Made by ColumnarHDWriter. Layout: docs/gel-format.md, "Side
// files". Threads: one thread of its own between start() and join(); the values of a block belong
// to the filling thread until it is handed over. Errors: told to the FirstFailure; all waiting of
// this set and of the descriptors then ends.
#pragma once

#include <array>
#include <thread>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/writer/block_hand_over.h"
#include "columnar/writer/block_values.h"
#include "columnar/writer/descriptor_exchange.h"
#include "columnar/writer/growing_file.h"
#include "columnar/writer/table_layout.h"
#include "columnar/writer/thread_permits.h"

namespace kelvarin {

// What the workers of a file share.
struct WorkerSurroundings {
  const TableLayout& layout;
  DescriptorExchange& descriptors;
  ThreadPermits& permits;
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
  // After BlockHandOver::finish() or stop().
  void join();

  BlockHandOver& handOver() { return m_handOver; }
  BlockValues& values(std::uint64_t block) { return m_values[block % BlockHandOver::kBuffers]; }
  std::size_t firstColumn() const { return m_firstColumn; }
  int columnSet() const { return m_columnSet; }
  GrowingFile& sideFile() { return m_sideFile; }

  // Where a block ends in the side file. One of the last few that were released.
  std::uint64_t endOfBlock(std::uint64_t block) const { return m_blockEnds[block % kKeptEnds]; }

  // After join(): the largest chunk of each column, and the largest values before compression.
  const std::vector<std::uint32_t>& largestChunks() const { return m_largestChunks; }
  const std::vector<std::uint32_t>& largestValues() const { return m_largestValues; }

 private:
  static constexpr std::size_t kKeptEnds = 4;

  void run();
  [[nodiscard]] bool storeBlocks();
  [[nodiscard]] bool storeBlock(std::uint64_t block);
  void encode(const BlockValues& values, unsigned char* descriptor);
  std::size_t encodeColumn(std::size_t index, const BlockValues& values, unsigned char* descriptor);

  const WorkerSurroundings m_surroundings;
  const std::size_t m_index;
  const std::size_t m_firstColumn;
  const int m_columnSet;
  GrowingFile m_sideFile;
  BlockHandOver m_handOver;
  std::array<BlockValues, BlockHandOver::kBuffers> m_values;

  // The worker's thread only, until it is joined.
  ChunkEncoder m_encoder;
  std::vector<KnownTexts> m_knownTexts;  // one a column; of other types nothing
  ByteBuffer m_chunks;
  std::vector<std::uint64_t> m_positions;  // of the chunks in m_chunks
  std::vector<std::uint32_t> m_largestChunks;
  std::vector<std::uint32_t> m_largestValues;
  std::array<std::uint64_t, kKeptEnds> m_blockEnds{};  // an entry is read after its block's release

  std::thread m_thread;
};

}  // namespace kelvarin
