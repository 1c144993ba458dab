#include "columnar/reader/block_scan.h"

#include <algorithm>

namespace kelvarin {

namespace {

// The size of a full record, unless that is fewer descriptors than the minimum.
constexpr std::uint64_t kRecordBudget = 16ull << 20;

}  // namespace

BlockScan::Step BlockScan::next(BlockInfo& block) {
  if (m_isEnded) {
    return Step::end;
  }
  while (m_nextInRecord == m_record.count()) {
    if (!m_outcome) {
      readRecord();
    }
    if (*m_outcome != Outcome::record && !describesNothing()) {
      return stepOfOutcome();
    }
    m_outcome.reset();
  }
  const unsigned char* descriptor = m_record.descriptor(m_nextInRecord);
  ++m_nextInRecord;
  if (m_nextInRecord < m_record.count()) {
    describe(block, descriptor);
    block.following = m_record.descriptor(m_nextInRecord);
  } else {
    m_lastOfRecord.assign(descriptor, descriptor + m_file.descriptorLayout().width());
    readRecord();
    describe(block, m_lastOfRecord.data());
    block.following = *m_outcome == Outcome::record ? m_record.descriptor(0) : nullptr;
    const bool hasAllRows = m_rowsBefore + block.rowCount == m_file.rowCount();
    block.endsWithFile = m_file.isComplete() && (*m_outcome == Outcome::endMarker || hasAllRows);
  }
  m_rowsBefore += block.rowCount;
  ++m_blocksBefore;
  return Step::block;
}

void BlockScan::describe(BlockInfo& block, const unsigned char* descriptor) const {
  block = {};
  block.index = m_blocksBefore;
  block.firstRow = m_rowsBefore;
  block.rowCount = DescriptorLayout::rowCount(descriptor);
  block.descriptor = descriptor;
}

void BlockScan::readRecord() {
  m_record = {};
  m_nextInRecord = 0;
  m_outcome = m_reader.next(m_record);
  m_largestRecord = std::max<std::uint64_t>(m_largestRecord, m_record.count());
}

BlockScan::Step BlockScan::stepOfOutcome() {
  const Outcome outcome = *m_outcome;
  m_outcome.reset();
  switch (outcome) {
    case Outcome::corrupted:
      return hasAllRows() ? endCut() : loseRecord();
    case Outcome::truncated:
      return endCut();
    case Outcome::endOfFile:
      if (m_file.isComplete()) {
        return endCut();
      }
      break;
    case Outcome::unfinished:
      m_isUnfinished = true;
      break;
    case Outcome::record:
    case Outcome::endMarker:
      break;
  }
  return endOfRows();
}

// The end marker is missing, though all rows of a finished file may be there.
BlockScan::Step BlockScan::endCut() {
  m_lostFirstRow = m_rowsBefore;
  m_isEnded = true;
  return Step::truncated;
}

bool BlockScan::hasAllRows() const {
  return m_file.isComplete() && !m_hasLostRecord && m_rowsBefore == m_file.rowCount();
}

// The header of a finished file has to agree with its descriptors. The rows of lost records are
// only estimated, so they cannot be compared.
BlockScan::Step BlockScan::endOfRows() {
  const bool isCountWrong = m_file.isComplete() && m_file.rowCount() != m_rowsBefore;
  m_isEnded = true;
  if (!isCountWrong || m_hasLostRecord) {
    return Step::end;
  }
  m_isRowCountWrong = true;
  m_lostFirstRow = std::min(m_rowsBefore, m_file.rowCount());
  m_lostLastRow = std::max(m_rowsBefore, m_file.rowCount()) - 1;
  return Step::corrupted;
}

BlockScan::Step BlockScan::loseRecord() {
  m_hasLostRecord = true;
  const std::uint64_t rows = blocksOfLostRecord() * m_file.rowsInBlock();
  const std::uint64_t expected =
      m_file.rowCount() > m_rowsBefore ? m_file.rowCount() - m_rowsBefore : 0;
  return lose(m_file.isComplete() && expected > 0 ? std::min(rows, expected) : rows);
}

// A damaged length leads to bytes that only look like a record. The loss has been reported already
// when all other blocks are known.
bool BlockScan::describesNothing() {
  if (*m_outcome != Outcome::corrupted || !m_hasLostRecord || !m_file.isComplete()) {
    return false;
  }
  const FollowingRecords following = m_reader.following();
  return following.reachesEnd && m_blocksBefore + following.descriptors == allBlocks();
}

std::uint64_t BlockScan::allBlocks() const {
  return (m_file.rowCount() + m_file.rowsInBlock() - 1) / m_file.rowsInBlock();
}

// The number of all blocks of a finished file is known, and the lost ones are the difference.
// Otherwise the number that the record itself announces counts, up to that of a full record.
std::uint64_t BlockScan::blocksOfLostRecord() {
  const FollowingRecords following = m_reader.following();
  const std::uint64_t known = m_blocksBefore + following.descriptors;
  if (m_file.isComplete() && following.reachesEnd && allBlocks() > known) {
    return allBlocks() - known;
  }
  const std::uint64_t largest = std::max(m_largestRecord, following.largestRecord);
  const std::uint64_t full =
      largest > 0
          ? largest
          : std::max(kRecordBudget / m_file.descriptorLayout().width(), kMinDescriptorsInRecord);
  const std::uint64_t announced = m_reader.announcedDescriptors();
  return announced > 0 && announced <= full ? announced : full;
}

BlockScan::Step BlockScan::lose(std::uint64_t rowCount) {
  m_lostFirstRow = m_rowsBefore;
  m_lostLastRow = m_rowsBefore + rowCount - 1;
  m_rowsBefore += rowCount;
  m_blocksBefore += (rowCount + m_file.rowsInBlock() - 1) / m_file.rowsInBlock();
  return Step::corrupted;
}

}  // namespace kelvarin
