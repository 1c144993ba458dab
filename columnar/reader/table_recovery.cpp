#include "columnar/reader/table_recovery.h"

#include <algorithm>
#include <new>

#include "columnar/reader/column_decoding.h"

namespace kelvarin {

namespace {

// The limit of rows that are decoded to find the row count of the last block.
constexpr std::uint64_t kRowsToTry = 200'000'000;

}  // namespace

Result<std::unique_ptr<TableRecovery>, std::string> TableRecovery::open(const GelFile& file) {
  std::unique_ptr<TableRecovery> recovery(new TableRecovery(file));
  if (const Status<std::string> status = recovery->openSides(); !status) {
    return Failure{status.error()};
  }
  auto chunks = ChunkReader::open(file, recovery->m_columns);
  if (!chunks) {
    return Failure{chunks.error()};
  }
  recovery->m_chunks = std::move(*chunks);
  recovery->findGaps();
  return recovery;
}

TableRecovery::TableRecovery(const GelFile& file)
    : m_file(file),
      m_columns(file.columnsInRowOrder()),
      m_blockDecoder(file, m_columns),
      m_scan(file) {}

Status<std::string> TableRecovery::openSides() {
  const std::vector<GelColumn>& columns = m_file.columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (m_sides.empty() || m_sides.back().set != columns[i].columnSet) {
      SideFile side;
      side.set = columns[i].columnSet;
      side.firstColumn = i;
      side.source = m_file.openSide(side.set);
      if (!side.source) {
        return Failure{m_file.sidePath(side.set)};
      }
      side.finder = std::make_unique<ChunkFinder>(*side.source, m_isStopped);
      m_sides.push_back(std::move(side));
    }
    ++m_sides.back().columnCount;
    m_sideOfColumn.push_back(m_sides.size() - 1);
  }
  return Done{};
}

// Finds the ranges of blocks without descriptors, between the others and after them.
void TableRecovery::findGaps() {
  BlockScan scan(m_file);
  std::vector<unsigned char> last;
  std::optional<DescriptorGap> gap;
  std::uint64_t described = 0;
  std::uint64_t rows = 0;
  BlockScan::Step step = BlockScan::Step::block;
  while (step == BlockScan::Step::block || step == BlockScan::Step::corrupted) {
    BlockInfo block;
    step = scan.next(block);
    if (step == BlockScan::Step::block) {
      if (gap) {
        endGap(std::move(*gap), block.descriptor);
        gap.reset();
      }
      last.assign(block.descriptor, block.descriptor + m_file.descriptorLayout().width());
      ++described;
      rows += block.rowCount;
    } else if (!gap) {
      gap = gapAfter(last.empty() ? nullptr : last.data());
      gap->blocksBefore = described;
    }
  }
  if (!m_file.isComplete() || (rows != m_file.rowCount() && !isEmpty(*gap))) {
    endGap(std::move(*gap), nullptr);
  }
  if (m_file.isComplete() && m_gaps.size() == 1) {
    const std::uint64_t all =
        m_file.rowCount() / m_file.rowsInBlock() + (m_file.rowCount() % m_file.rowsInBlock() > 0);
    m_gaps.front().blockCount = all - std::min(all, described);
  }
}

// The gap begins with the last chunk of the previous block, whose own bytes show where it ends.
DescriptorGap TableRecovery::gapAfter(const unsigned char* descriptor) const {
  DescriptorGap gap;
  const DescriptorLayout& layout = m_file.descriptorLayout();
  for (const SideFile& side : m_sides) {
    DescriptorGap::Side begin;
    if (descriptor != nullptr) {
      const BlockLocation location = layout.blockLocation(descriptor, side.set);
      begin.begin = location.offset;
      begin.isLastChunk = true;
      for (std::size_t i = 0; i < side.columnCount; ++i) {
        const std::uint32_t position = layout.chunkPosition(descriptor, side.firstColumn + i);
        begin.begin = (location.hasDeltas ? begin.begin : location.offset) + position;
      }
    }
    gap.sides.push_back(begin);
  }
  return gap;
}

// Whether every side file ends with the last block that is known.
bool TableRecovery::isEmpty(const DescriptorGap& gap) {
  for (std::size_t i = 0; i < m_sides.size(); ++i) {
    const std::uint64_t size = m_sides[i].source->size();
    const ChunkChain chain = m_sides[i].finder->follow(gap.sides[i].begin, size);
    if (!gap.sides[i].isLastChunk || chain.size() != 1 || chain.end != size) {
      return false;
    }
  }
  return true;
}

void TableRecovery::endGap(DescriptorGap gap, const unsigned char* following) {
  for (std::size_t i = 0; i < m_sides.size(); ++i) {
    if (following != nullptr) {
      const std::uint64_t end =
          m_file.descriptorLayout().blockLocation(following, m_sides[i].set).offset;
      gap.sides[i].end = std::max(end, gap.sides[i].begin);
    }
  }
  m_gaps.push_back(std::move(gap));
}

ReadEvent TableRecovery::next() {
  try {
    return nextEvent();
  } catch (const std::bad_alloc&) {
    m_isEnded = true;
    m_outcome.hasUncountedLoss = true;
    return {.kind = ReadEvent::Kind::noMemory, .firstRow = m_outcome.rows};
  }
}

ReadEvent TableRecovery::nextEvent() {
  while (!m_isEnded && !m_isStopped()) {
    if (m_block) {
      return nextBatch();
    }
    if (!findBlock()) {
      return finish();
    }
  }
  return {};
}

// Sets m_block, unless what comes next is damaged. False: at the end.
bool TableRecovery::findBlock() {
  if (m_lost) {
    LostBlocks::Block block;
    if (m_lost->next(block)) {
      readFound(block);
    } else {
      leaveGap();
    }
    return true;
  }
  BlockInfo block;
  switch (m_scan.next(block)) {
    case BlockScan::Step::block:
      ++m_describedBlocks;
      block.endsWithFile = false;  // other bytes may follow it
      readDescribed(block);
      return true;
    case BlockScan::Step::corrupted:
    case BlockScan::Step::truncated:
      (void)enterGap();
      return true;
    case BlockScan::Step::end:
      break;
  }
  return enterGap();
}

void TableRecovery::readDescribed(const BlockInfo& block) {
  const auto decoding = std::make_shared<BlockDecoding>(m_blockDecoder, m_chunks->fetch(block));
  if (decoding->decode() == ReadStatus::ok) {
    m_block = std::shared_ptr<const BlockColumns>(decoding, &decoding->columns());
    return;
  }
  ++m_outcome.lostBlocks;
  m_outcome.lostRows += block.rowCount;
}

// False: there is no gap after the blocks so far.
bool TableRecovery::enterGap() {
  if (m_nextGap == m_gaps.size() || m_gaps[m_nextGap].blocksBefore != m_describedBlocks) {
    return false;
  }
  m_foundInGap = 0;
  m_lost = std::make_unique<LostBlocks>(m_file, m_sides, m_gaps[m_nextGap]);
  ++m_nextGap;
  return true;
}

void TableRecovery::leaveGap() {
  if (const auto count = m_lost->blockCount(); count) {
    const std::uint64_t lost = *count - std::min(*count, m_foundInGap);
    m_outcome.lostBlocks += lost;
    m_outcome.lostRows += lost * m_file.rowsInBlock();
  } else {
    m_outcome.hasUncountedLoss |= m_lost->hasDamage();
  }
  m_outcome.hasUnfinished |= m_lost->hasUnfinished();
  m_lost.reset();
}

void TableRecovery::readFound(const LostBlocks::Block& block) {
  const std::uint32_t full = m_file.rowsInBlock();
  if (block.isLast && m_file.isComplete() && m_file.rowCount() % full != 0) {
    m_block = decoded(block, static_cast<std::uint32_t>(m_file.rowCount() % full));
  }
  if (!m_block) {
    m_block = decoded(block, full);
  }
  if (const auto rows = m_block || !block.isLast ? std::nullopt : countRows(block)) {
    m_block = decoded(block, *rows);
  }
  if (m_block) {
    ++m_foundInGap;
    ++m_outcome.foundBlocks;
  } else if (!m_lost->blockCount()) {
    ++m_outcome.lostBlocks;
    m_outcome.lostRows += full;
  }
}

std::shared_ptr<BlockColumns> TableRecovery::decoded(const LostBlocks::Block& block,
                                                     std::uint32_t rows) {
  auto columns = std::make_shared<BlockColumns>(m_blockDecoder.types(), rows);
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    const std::size_t column = m_columns[i];
    DecodedColumn values;
    if (decodeColumn(m_decoder, m_file.column(column), chunkOf(block, column), rows, values) !=
        ReadStatus::ok) {
      return nullptr;
    }
    columns->set(i, std::move(values));
  }
  return columns;
}

// The only count with which all columns decode; nothing when there are several.
std::optional<std::uint32_t> TableRecovery::countRows(const LostBlocks::Block& block) {
  RowCounts counts{1, m_file.rowsInBlock()};
  for (const std::size_t column : m_columns) {
    const GelType type = m_file.column(column).type;
    counts = m_decoder.possibleRowCounts(chunkOf(block, column), type, counts);
  }
  std::optional<std::uint32_t> found;
  std::uint64_t rowsLeft = kRowsToTry;
  for (std::uint64_t rows = counts.min; rows <= counts.max; ++rows) {
    const std::uint64_t cost = (rows + 1) * m_columns.size();
    if (cost > rowsLeft || m_isStopped()) {
      return std::nullopt;
    }
    rowsLeft -= cost;
    if (!decoded(block, static_cast<std::uint32_t>(rows))) {
      continue;
    }
    if (found) {
      return std::nullopt;
    }
    found = static_cast<std::uint32_t>(rows);
  }
  return found;
}

Bytes TableRecovery::chunkOf(const LostBlocks::Block& block, std::size_t column) {
  const LostBlocks::Chunk& chunk = block.chunks[column];
  return m_sides[m_sideOfColumn[column]].finder->bytes(chunk.begin, chunk.end);
}

ReadEvent TableRecovery::nextBatch() {
  ReadEvent event{.kind = ReadEvent::Kind::rows,
                  .firstRow = m_outcome.rows,
                  .batch = m_block->batch(m_nextBatch),
                  .blocks = m_nextBatch == 0 ? 1u : 0u};
  m_outcome.rows += event.batch->rowCount();
  m_outcome.blocks += event.blocks;
  event.lastRow = m_outcome.rows - 1;
  ++m_nextBatch;
  if (m_nextBatch == m_block->batchCount()) {
    m_nextBatch = 0;
    m_block.reset();
  }
  return event;
}

// The header of a finished file has the number of all rows.
ReadEvent TableRecovery::finish() {
  m_isEnded = true;
  if (m_file.isComplete()) {
    m_outcome.lostRows = m_file.rowCount() - std::min(m_file.rowCount(), m_outcome.rows);
  }
  return {};
}

}  // namespace kelvarin
