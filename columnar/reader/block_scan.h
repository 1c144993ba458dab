// Goes through the blocks of a file by their descriptors, without touching their chunks.
//
// It also finds which rows the descriptors of a damaged record described. Used by block_reader.cpp
// and verification.
// Errors: Step; never logs, throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "columnar/reader/descriptor_reader.h"

namespace kelvarin {

// One block of rows. The descriptors are valid until the next step.
struct BlockInfo {
  std::uint64_t index = 0;     // among the file's blocks; damaged records count as their blocks
  std::uint64_t firstRow = 0;  // counted from 0
  std::uint32_t rowCount = 0;
  const unsigned char* descriptor = nullptr;
  // The descriptor of the following block, which begins where this one's chunks end. Null for the
  // last known block.
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
    truncated,  // the file ends too early; lostFirstRow() is the first missing row
    end
  };

  explicit BlockScan(const GelFile& file) : m_file(file), m_reader(file) {}

  // After truncated and end the steps are `end`.
  Step next(BlockInfo& block);
  std::uint64_t lostFirstRow() const { return m_lostFirstRow; }
  std::uint64_t lostLastRow() const { return m_lostLastRow; }
  // After `corrupted`: the damage is the header's row count, compared at the end of all blocks.
  bool isRowCountWrong() const { return m_isRowCountWrong; }
  // The number of rows up to the end of the last block.
  std::uint64_t rowsPassed() const { return m_rowsBefore; }
  // Why the rows are lost, after `corrupted`.
  ReadStatus damage() const {
    return m_isRowCountWrong ? ReadStatus::corrupted : m_reader.damage();
  }
  // After `end`: the file ended inside a record that its writer is still writing.
  bool isUnfinished() const { return m_isUnfinished; }
  // The offset of the damaged record, or where one is missing.
  std::uint64_t damageOffset() const { return m_reader.recordOffset(); }

 private:
  using Outcome = DescriptorReader::Outcome;

  void readRecord();
  Step stepOfOutcome();
  Step endOfRows();
  Step endCut();
  bool hasAllRows() const;
  Step loseRecord();
  bool describesNothing();
  std::uint64_t allBlocks() const;
  std::uint64_t blocksOfLostRecord();
  Step lose(std::uint64_t rowCount);
  void describe(BlockInfo& block, const unsigned char* descriptor) const;

  const GelFile& m_file;
  DescriptorReader m_reader;
  DescriptorRecord m_record;
  std::size_t m_nextInRecord = 0;
  // The last descriptor of the previous record, kept while the next record is read.
  std::vector<unsigned char> m_lastOfRecord;
  // The outcome of reading the record after the current one.
  std::optional<Outcome> m_outcome;

  std::uint64_t m_rowsBefore = 0;
  std::uint64_t m_blocksBefore = 0;
  std::uint64_t m_largestRecord = 0;  // in descriptors; all records but the last have as many
  bool m_hasLostRecord = false;
  bool m_isRowCountWrong = false;
  bool m_isUnfinished = false;
  bool m_isEnded = false;
  std::uint64_t m_lostFirstRow = 0;
  std::uint64_t m_lostLastRow = 0;
};

}  // namespace kelvarin
