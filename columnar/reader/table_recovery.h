// Reads the rows of a table whose block descriptors are missing or damaged, from the head of its
// main file and its side files.
//
// Blocks with sound descriptors are read as usual. The chunks of all others are found in the side
// files (lost_blocks.h). A block is returned only when all its columns are whole.
// Used by `kelvarin gel recover`, and by the editor of the reading action.
// Threads: one at a time.
// Errors: the outcome; a lack of memory is an event; never logs, never throws.
#pragma once

#include "columnar/reader/block_decoding.h"
#include "columnar/reader/chunk_reader.h"
#include "columnar/reader/lost_blocks.h"
#include "columnar/reader/read_event.h"

namespace kelvarin {

struct RecoveryOutcome {
  std::uint64_t blocks = 0;  // returned
  std::uint64_t rows = 0;
  std::uint64_t foundBlocks = 0;  // returned blocks without a descriptor
  std::uint64_t lostBlocks = 0;   // as far as they can be counted
  std::uint64_t lostRows = 0;     // in them
  bool hasUncountedLoss = false;  // damage of an unknown number of blocks
  bool hasUnfinished = false;     // bytes at the end of side files that are no whole block yet

  bool hasLoss() const { return lostBlocks > 0 || lostRows > 0 || hasUncountedLoss; }
};

class TableRecovery {
 public:
  // The error is the path of a side file that cannot be opened. `file` outlives the recovery.
  static Result<std::unique_ptr<TableRecovery>, std::string> open(const GelFile& file);

  // Before the first event: `isStopped` is asked on the thread that calls next(), and ends it
  // early, as at the end of the table, when it is true.
  void stopWhen(IsStopped isStopped) { m_isStopped = std::move(isStopped); }
  // Rows, the end, or a lack of memory. Row numbers count the returned rows.
  ReadEvent next();
  // Final after the last event.
  const RecoveryOutcome& outcome() const { return m_outcome; }

 private:
  explicit TableRecovery(const GelFile& file);

  Status<std::string> openSides();
  void findGaps();
  DescriptorGap gapAfter(const unsigned char* descriptor) const;
  bool isEmpty(const DescriptorGap& gap);
  void endGap(DescriptorGap gap, const unsigned char* following);
  ReadEvent nextEvent();
  bool findBlock();
  void readDescribed(const BlockInfo& block);
  bool enterGap();
  void leaveGap();
  void readFound(const LostBlocks::Block& block);
  // Null: it has another number of rows, or is damaged.
  std::shared_ptr<BlockColumns> decoded(const LostBlocks::Block& block, std::uint32_t rows);
  std::optional<std::uint32_t> countRows(const LostBlocks::Block& block);
  Bytes chunkOf(const LostBlocks::Block& block, std::size_t column);
  ReadEvent nextBatch();
  ReadEvent finish();

  const GelFile& m_file;
  IsStopped m_isStopped = [] { return false; };
  const std::vector<std::size_t> m_columns;  // in the order of the rows
  std::vector<SideFile> m_sides;
  std::vector<std::size_t> m_sideOfColumn;
  std::unique_ptr<ChunkReader> m_chunks;
  BlockDecoder m_blockDecoder;
  BlockScan m_scan;
  std::uint64_t m_describedBlocks = 0;  // of the scan so far

  std::vector<DescriptorGap> m_gaps;
  std::size_t m_nextGap = 0;
  std::unique_ptr<LostBlocks> m_lost;  // of the gap that is being read
  std::uint64_t m_foundInGap = 0;
  ChunkDecoder m_decoder;

  std::shared_ptr<const BlockColumns> m_block;  // whose rows are returned
  std::size_t m_nextBatch = 0;
  RecoveryOutcome m_outcome;
  bool m_isEnded = false;
};

}  // namespace kelvarin
