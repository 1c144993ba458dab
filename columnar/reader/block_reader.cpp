#include "columnar/reader/block_reader.h"

#include <new>
#include <utility>

#include "columnar/codecs/key_words.h"
#include "columnar/reader/stored_statistics.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kBlocksForOneComparison = 16;

}  // namespace

Result<std::unique_ptr<BlockReader>, std::string> BlockReader::open(
    const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock) {
  Result<std::unique_ptr<ChunkReader>, std::string> chunks = ChunkReader::open(file, columns);
  if (!chunks) {
    return Failure{chunks.error()};
  }
  return std::unique_ptr<BlockReader>(
      new BlockReader(file, columns, std::move(*chunks), std::move(wantsBlock)));
}

BlockReader::BlockReader(const GelFile& file, const std::vector<std::size_t>& columns,
                         std::unique_ptr<ChunkReader> chunks, WantsBlock wantsBlock)
    : m_file(file),
      m_columns(columns),
      m_chunks(std::move(chunks)),
      m_wantsBlock(std::move(wantsBlock)),
      m_scan(file) {
  m_types.reserve(columns.size());
  for (const std::size_t column : columns) {
    m_types.push_back(file.meta(column).type());
  }
}

ReadEvent BlockReader::next(std::unique_ptr<DecodedBlock> spare) {
  try {
    return nextEvent(std::move(spare));
  } catch (const std::bad_alloc&) {
    return endWith({ReadEvent::Kind::noMemory, m_scan.rowsPassed(), 0, nullptr});
  }
}

ReadEvent BlockReader::nextEvent(std::unique_ptr<DecodedBlock> spare) {
  while (!m_isEnded) {
    BlockInfo block;
    switch (m_scan.next(block)) {
      case BlockScan::Step::block:
        if (!m_wantsBlock || m_wantsBlock(m_file, block)) {
          return read(block, std::move(spare));
        }
        break;
      case BlockScan::Step::corrupted:
        return {ReadEvent::Kind::corrupted, m_scan.lostFirstRow(), m_scan.lostLastRow(), nullptr,
                m_scan.damage()};
      case BlockScan::Step::truncated:
        return endWith({ReadEvent::Kind::truncated, m_scan.lostFirstRow(), 0, nullptr});
      case BlockScan::Step::end:
        return endWith({.cause = m_scan.isUnfinished() ? ReadStatus::incomplete : ReadStatus::ok});
    }
  }
  return {};
}

ReadEvent BlockReader::read(const BlockInfo& block, std::unique_ptr<DecodedBlock> spare) {
  if (!spare) {
    spare = std::make_unique<DecodedBlock>();
    spare->setColumns(m_types);
  }
  m_chunks->load(block);
  ReadStatus worst = ReadStatus::ok;
  for (std::size_t i = 0; i < m_types.size() && worst != ReadStatus::truncated; ++i) {
    // After a damaged chunk the others are not decoded, but one of them may be cut off.
    const ReadStatus status = worst == ReadStatus::ok ? decodeColumn(block, i, spare->column(i))
                                                      : m_chunks->loadStatus(i);
    worst = status == ReadStatus::ok ? worst : status;
  }
  if (worst == ReadStatus::truncated) {
    return endWith({ReadEvent::Kind::truncated, block.firstRow, block.lastRow(), nullptr});
  }
  if (worst != ReadStatus::ok) {
    return {ReadEvent::Kind::corrupted, block.firstRow, block.lastRow(), nullptr, worst};
  }
  spare->start(block.firstRow, block.rowCount);
  return {ReadEvent::Kind::block, block.firstRow, block.lastRow(), std::move(spare)};
}

ReadStatus BlockReader::decodeColumn(const BlockInfo& block, std::size_t index,
                                     DecodedColumn& values) {
  const ReadStatus status = m_chunks->decode(index, values);
  const bool isRight = status != ReadStatus::ok || !isToCompare(block, m_types[index]) ||
                       matchesStatistics(m_file, block, m_columns[index], values);
  return isRight ? status : ReadStatus::foreign;
}

// The side file of another table has sound chunks, too, and only the statistics differ. Comparing
// all blocks would take as long as decoding them, so a sample is compared. Blocks of few keys are
// always compared: their words look the same for every storage code, and the metadata block, which
// has the code, has no checksum.
bool BlockReader::isToCompare(const BlockInfo& block, MetaTypeColumn type) const {
  const bool isDoubtful = type == MetaTypeColumn::key && block.rowCount < kKeysInGroup;
  return isDoubtful || block.index % kBlocksForOneComparison == 0 || block.following == nullptr;
}

ReadEvent BlockReader::endWith(ReadEvent event) {
  m_isEnded = true;
  return event;
}

}  // namespace kelvarin
