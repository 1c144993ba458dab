// Goes through the blocks of a file by their descriptors, without touching their chunks.
//
// Used by block_reader.cpp and verification. Tells which rows each damaged record stood for.
// Threads: one at a time.  Errors: Step; never logs, never throws but for a lack of memory.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "columnar/reader/descriptor_reader.h"

namespace kelvarin {

// One block of rows. The descriptors live until the next step.
struct BlockInfo {
  std::uint64_t index = 0;     // among the file's blocks; damaged records count as their blocks
  std::uint64_t firstRow = 0;  // counted from 0
  std::uint32_t rowCount = 0;
  const unsigned char* descriptor = nullptr;
  // Of the following block, which begins where this one's chunks end. Null for the last known one.
  const unsigned char* following = nullptr;
  // The last block of a file that ends as it should: its chunks end with their side files.
  bool endsWithFile = false;

  std::uint64_t lastRow() const { return firstRow + rowCount - 1; }
};

class BlockScan {
 public:
  enum class Step {
    block,
    corrupted,  // rows from lostFirstRow() to lostLastRow() have no descriptor
    truncated,  // nothing follows though it should; lostFirstRow() is the first row missing
    end
  };

  explicit BlockScan(const GelFile& file) : m_file(file), m_reader(file) {}

  // After truncated and end the steps are `end`.
  Step next(BlockInfo& block);
  std::uint64_t lostFirstRow() const { return m_lostFirstRow; }
  std::uint64_t lostLastRow() const { return m_lostLastRow; }
  // Whether it is the header's row count that was found wrong, at the end of all blocks.
  bool isRowCountWrong() const { return m_isRowCountWrong; }
  // Up to the end of the last block.
  std::uint64_t rowsPassed() const { return m_rowsBefore; }
  // Why the rows are lost, after `corrupted`.
  ReadStatus damage() const {
    return m_isRowCountWrong ? ReadStatus::corrupted : m_reader.damage();
  }
  // After `end`: the file ended inside a record that its writer is still at.
  bool isUnfinished() const { return m_isUnfinished; }
  // Of the damaged record, or where one is missing.
  std::uint64_t damageOffset() const { return m_reader.recordOffset(); }

 private:
  using Outcome = DescriptorReader::Outcome;

  void readRecord();
  Step stepOfOutcome();
  Step endOfRows();
  Step endCut();
  bool hasAllRows() const;
  Step loseRecord();
  bool standsForNothing();
  std::uint64_t allBlocks() const;
  std::uint64_t blocksOfLostRecord();
  Step lose(std::uint64_t rowCount);
  void describe(BlockInfo& block, const unsigned char* descriptor) const;

  const GelFile& m_file;
  DescriptorReader m_reader;
  DescriptorRecord m_record;
  std::size_t m_nextInRecord = 0;
  // The last descriptor of the record before, while what follows it is looked up.
  std::vector<unsigned char> m_lastOfRecord;
  // What came instead of the record after the current one.
  std::optional<Outcome> m_outcome;

  std::uint64_t m_rowsBefore = 0;
  std::uint64_t m_blocksBefore = 0;
  std::uint64_t m_largestRecord = 0;  // descriptors; every record but the last is as large
  bool m_hasLostRecord = false;
  bool m_isRowCountWrong = false;
  bool m_isUnfinished = false;
  bool m_isEnded = false;
  std::uint64_t m_lostFirstRow = 0;
  std::uint64_t m_lostLastRow = 0;
};

}  // namespace kelvarin
