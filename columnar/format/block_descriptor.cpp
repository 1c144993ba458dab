#include "columnar/format/block_descriptor.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kMaxPosition = 0xFFFFFFFF;

std::size_t statisticsSize(GelType type) {
  switch (type) {
    case GelType::key:
      return kKeyStatisticsSize;
    case GelType::number:
      return kNumberStatisticsSize;
    case GelType::text:
      break;
  }
  return kTextStatisticsSize;
}

}  // namespace

DescriptorLayout::DescriptorLayout(std::span<const GelColumn> columns, int columnSetCount) {
  std::size_t column = 0;
  m_chunkEntries.reserve(columns.size());
  for (int set = 0; set < columnSetCount; ++set) {
    m_slices.push_back(m_width);
    m_width += kBlockOffsetSize;
    for (; column < columns.size() && columns[column].columnSet == set; ++column) {
      m_chunkEntries.push_back(m_width);
      m_width += kPositionSize + kNullFlagSize + statisticsSize(columns[column].type);
    }
  }
  assert(m_chunkEntries.size() == columns.size());
}

BlockLocation DescriptorLayout::blockLocation(const unsigned char* descriptor,
                                              int columnSet) const {
  const auto value = loadPacked<std::uint64_t>(descriptor + sliceOffset(columnSet));
  return {value & ~kPositionsAreDeltas, (value & kPositionsAreDeltas) != 0};
}

void DescriptorLayout::setChunks(unsigned char* descriptor, int columnSet, std::uint64_t offset,
                                 std::size_t firstColumn,
                                 std::span<const std::uint64_t> positions) const {
  const bool hasDeltas = positions.back() > kMaxPosition;
  setBlockLocation(descriptor, columnSet, {.offset = offset, .hasDeltas = hasDeltas});
  std::uint64_t base = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    setChunkPosition(descriptor, firstColumn + i, static_cast<std::uint32_t>(positions[i] - base));
    base = hasDeltas ? positions[i] : 0;
  }
}

void DescriptorLayout::setBlockLocation(unsigned char* descriptor, int columnSet,
                                        BlockLocation location) const {
  storePacked(descriptor + sliceOffset(columnSet),
              location.offset | (location.hasDeltas ? kPositionsAreDeltas : 0));
}

}  // namespace kelvarin
