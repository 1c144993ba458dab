#include "columnar/format/block_descriptor.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kLargestPosition = 0xFFFFFFFF;

std::size_t summarySize(GelType type) {
  switch (type) {
    case GelType::key:
      return kKeySummarySize;
    case GelType::number:
      return kNumberSummarySize;
    case GelType::text:
      break;
  }
  return kTextSummarySize;
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
      m_width += kPositionSize + kNullFlagSize + summarySize(columns[column].type);
    }
  }
  m_slices.push_back(m_width);
  assert(m_chunkEntries.size() == columns.size());
}

BlockPlace DescriptorLayout::place(const unsigned char* descriptor, int columnSet) const {
  const auto value = loadPacked<std::uint64_t>(descriptor + sliceOffset(columnSet));
  return {value & ~kPositionsAreDifferences, (value & kPositionsAreDifferences) != 0};
}

void DescriptorLayout::setChunks(unsigned char* descriptor, int columnSet, std::uint64_t offset,
                                 std::size_t firstColumn,
                                 std::span<const std::uint64_t> positions) const {
  const bool hasDifferences = positions.back() > kLargestPosition;
  setPlace(descriptor, columnSet, {.offset = offset, .hasDifferences = hasDifferences});
  std::uint64_t base = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    setChunkPosition(descriptor, firstColumn + i, static_cast<std::uint32_t>(positions[i] - base));
    base = hasDifferences ? positions[i] : 0;
  }
}

void DescriptorLayout::setPlace(unsigned char* descriptor, int columnSet, BlockPlace place) const {
  storePacked(descriptor + sliceOffset(columnSet),
              place.offset | (place.hasDifferences ? kPositionsAreDifferences : 0));
}

}  // namespace kelvarin
