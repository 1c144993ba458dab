#include "columnar/reader/block_units.h"

#include <algorithm>
#include <new>
#include <utility>

namespace kelvarin {

Result<std::unique_ptr<BlockUnits>, std::string> BlockUnits::open(
    const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock,
    const TablePart& part) {
  Result<std::unique_ptr<ChunkReader>, std::string> chunks = ChunkReader::open(file, columns);
  if (!chunks) {
    return Failure{chunks.error()};
  }
  return std::unique_ptr<BlockUnits>(
      new BlockUnits(file, columns, std::move(*chunks), std::move(wantsBlock), part));
}

BlockUnits::BlockUnits(const GelFile& file, const std::vector<std::size_t>& columns,
                       std::unique_ptr<ChunkReader> chunks, WantsBlock wantsBlock,
                       const TablePart& part)
    : m_file(file),
      m_chunks(std::move(chunks)),
      m_wantsBlock(std::move(wantsBlock)),
      m_part(std::make_shared<const TablePart>(part)),
      m_decoder(file, columns),
      m_scan(file) {}

std::size_t BlockUnits::unitsOfBlock() const {
  return batchesOfBlock(m_file.rowsInBlock(), m_chunks->columnCount(), m_part->targets != nullptr);
}

std::unique_ptr<BlockUnit> BlockUnits::next(TextForm form) {
  std::unique_ptr<BlockUnit> unit;
  try {
    unit = std::make_unique<BlockUnit>(m_part);
    fill(*unit, form);
  } catch (const std::bad_alloc&) {
    endWith({.kind = ReadEvent::Kind::noMemory, .firstRow = m_scan.rowsPassed()});
  }
  return unit && !unit->isEmpty() ? std::move(unit) : nullptr;
}

void BlockUnits::fill(BlockUnit& unit, TextForm form) {
  if (m_nextPart.block) {
    unit.add(m_nextPart);
    ++m_nextPart.batch;
    if (m_nextPart.batch == m_nextPart.block->columns().batchCount()) {
      m_nextPart = {};
    }
    return;
  }
  while (!m_isEnded && !unit.isFull() && !m_nextPart.block) {
    BlockInfo block;
    switch (m_scan.next(block)) {
      case BlockScan::Step::block:
        takeBlock(unit, block, form);
        break;
      case BlockScan::Step::corrupted:
        addLostRows(unit);
        break;
      case BlockScan::Step::truncated:
        endWith({.kind = ReadEvent::Kind::truncated, .firstRow = m_scan.lostFirstRow()});
        break;
      case BlockScan::Step::end:
        endWith({.cause = m_scan.isUnfinished() ? ReadStatus::incomplete : ReadStatus::ok});
        break;
    }
  }
}

void BlockUnits::takeBlock(BlockUnit& unit, const BlockInfo& block, TextForm form) {
  if (block.firstRow >= m_part->endRow || block.index >= m_part->endBlock) {
    endWith({});
    return;
  }
  const bool isInPart = block.index >= m_part->firstBlock && block.lastRow() >= m_part->firstRow;
  if (isInPart && (!m_wantsBlock || m_wantsBlock(m_file, block))) {
    addBlock(unit, block, form);
  }
}

void BlockUnits::addLostRows(BlockUnit& unit) const {
  if (m_scan.lostFirstRow() < m_part->endRow && m_scan.lostLastRow() >= m_part->firstRow) {
    unit.add({.kind = ReadEvent::Kind::corrupted,
              .firstRow = m_scan.lostFirstRow(),
              .lastRow = m_scan.lostLastRow(),
              .cause = m_scan.damage()});
  }
}

void BlockUnits::addBlock(BlockUnit& unit, const BlockInfo& block, TextForm form) {
  auto decoding = begun(block, form);
  unit.add({decoding, 0});
  if (decoding->columns().batchCount() > 1) {
    m_nextPart = {std::move(decoding), 1};
  }
}

std::shared_ptr<BlockDecoding> BlockUnits::begun(const BlockInfo& block, TextForm form) {
  const std::uint64_t skipped =
      m_part->firstRow > block.firstRow ? m_part->firstRow - block.firstRow : 0;
  const std::uint64_t end = std::min(block.lastRow() + 1, m_part->endRow);
  const std::int64_t firstRow = m_rowsBefore - static_cast<std::int64_t>(skipped);
  m_rowsBefore += static_cast<std::int64_t>(end - block.firstRow - skipped);
  const bool isWhole = skipped == 0 && end == block.lastRow() + 1;
  return std::make_shared<BlockDecoding>(m_decoder, m_chunks->fetch(block), form, firstRow,
                                         isWhole ? m_part->targets : nullptr);
}

void BlockUnits::endWith(const ReadEvent& event) {
  m_isEnded = true;
  m_end = event;
}

}  // namespace kelvarin
