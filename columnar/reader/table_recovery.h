// Reads the rows of a table whose block descriptors are missing or damaged, from the head of its
// main file and its side files.
//
// Blocks with sound descriptors are read as usual. The chunks of all others are found in the side
// files (lost_blocks.h). A block is returned only when all its columns are whole.
// Used by `kelvarin gel recover`.
// Errors: the outcome; a lack of memory is an event; never logs, never throws.
#pragma once

#include "columnar/reader/block_reader.h"
#include "columnar/reader/lost_blocks.h"

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
  // A block, the end, or a lack of memory. Row numbers count the returned rows.
  ReadEvent next(std::unique_ptr<DecodedBlock> spare);
  // Final after the last event.
  const RecoveryOutcome& outcome() const { return m_outcome; }

 private:
  explicit TableRecovery(const GelFile& file);

  Status<std::string> openSides();
  void findGaps();
  DescriptorGap gapAfter(const unsigned char* descriptor) const;
  bool isEmpty(const DescriptorGap& gap);
  void endGap(DescriptorGap gap, const unsigned char* following);
  ReadEvent nextEvent(std::unique_ptr<DecodedBlock> spare);
  ReadEvent readDescribed(const BlockInfo& block, std::unique_ptr<DecodedBlock> spare);
  bool enterGap();
  void leaveGap();
  std::unique_ptr<DecodedBlock> decodeFound(const LostBlocks::Block& block,
                                            std::unique_ptr<DecodedBlock> spare);
  bool decode(const LostBlocks::Block& block, std::uint32_t rows, DecodedBlock& decoded);
  std::optional<std::uint32_t> countRows(const LostBlocks::Block& block);
  Bytes chunkOf(const LostBlocks::Block& block, std::size_t column);
  ReadEvent eventOf(std::unique_ptr<DecodedBlock> block);
  ReadEvent finish();

  const GelFile& m_file;
  IsStopped m_isStopped = [] { return false; };
  const std::vector<std::size_t> m_columns;  // in the order of the rows
  std::vector<MetaTypeColumn> m_types;       // of them
  std::vector<SideFile> m_sides;
  std::vector<std::size_t> m_sideOfColumn;
  std::unique_ptr<BlockReader> m_reader;
  BlockScan m_scan;
  std::uint64_t m_describedBlocks = 0;  // of the scan so far

  std::vector<DescriptorGap> m_gaps;
  std::size_t m_nextGap = 0;
  std::unique_ptr<LostBlocks> m_lost;  // of the gap that is being read
  std::uint64_t m_foundInGap = 0;
  ChunkDecoder m_decoder;
  RecoveryOutcome m_outcome;
  bool m_isEnded = false;
};

}  // namespace kelvarin
