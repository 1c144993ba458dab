// What the main file says about one block of rows: how many rows it has, where each column set
// keeps it, where each column's chunk begins, and the statistics of the column's values.
//
// All descriptors of a file have the same width and the same offsets. Written by
// writer/column_set_worker.cpp, read by reader/.
// Layout: docs/gel-format.md, "Block descriptors".
#pragma once

#include <span>
#include <vector>

#include "base/byte_cursor.h"
#include "columnar/format/column_statistics.h"
#include "columnar/format/metadata_block.h"

namespace kelvarin {

inline constexpr std::size_t kRowCountSize = 4;
inline constexpr std::size_t kBlockOffsetSize = 8;
// The entry of a column is the position of its chunk, a null flag and its statistics.
inline constexpr std::size_t kPositionSize = 4;
inline constexpr std::size_t kNullFlagSize = 1;
inline constexpr std::uint64_t kPositionsAreDeltas = 1ull << 63;

// Where a column set's block begins in its side file.
struct BlockLocation {
  std::uint64_t offset = 0;
  // Each chunk position is the distance from the previous chunk, since not all positions fit 32
  // bits.
  bool hasDeltas = false;
  friend bool operator==(const BlockLocation&, const BlockLocation&) = default;
};

// The offsets of all fields in the descriptors of a file.
class DescriptorLayout {
 public:
  DescriptorLayout() = default;
  // `columns` in the order of the metadata block.
  DescriptorLayout(std::span<const GelColumn> columns, int columnSetCount);

  std::size_t width() const { return m_width; }

  static std::uint32_t rowCount(const unsigned char* descriptor) {
    return loadPacked<std::uint32_t>(descriptor);
  }
  static void setRowCount(unsigned char* descriptor, std::uint32_t rows) {
    storePacked(descriptor, rows);
  }

  BlockLocation blockLocation(const unsigned char* descriptor, int columnSet) const;
  void setBlockLocation(unsigned char* descriptor, int columnSet, BlockLocation location) const;

  // Columns are numbered in the order of the metadata block. A position counts from the beginning
  // of the block, or as BlockLocation::hasDeltas says.
  std::uint32_t chunkPosition(const unsigned char* descriptor, std::size_t column) const {
    return loadPacked<std::uint32_t>(descriptor + m_chunkEntries[column]);
  }
  void setChunkPosition(unsigned char* descriptor, std::size_t column,
                        std::uint32_t position) const {
    storePacked(descriptor + m_chunkEntries[column], position);
  }

  // Sets the location of a column set's block and the positions of its chunks, which count from
  // the beginning of the block. They become deltas as soon as one of them does not fit 32 bits; the
  // distance between two neighbours always does.
  void setChunks(unsigned char* descriptor, int columnSet, std::uint64_t offset,
                 std::size_t firstColumn, std::span<const std::uint64_t> positions) const;

  // Statistics is the type that belongs to the column's type. False: the bytes hold no statistics.
  template <typename Statistics>
  [[nodiscard]] bool readStatistics(const unsigned char* descriptor, std::size_t column,
                                    Statistics& statistics) const {
    return loadStatistics(descriptor + m_chunkEntries[column] + kPositionSize, statistics);
  }
  template <typename Statistics>
  void writeStatistics(unsigned char* descriptor, std::size_t column,
                       const Statistics& statistics) const {
    storeStatistics(descriptor + m_chunkEntries[column] + kPositionSize, statistics);
  }

  // The offset of the part of a descriptor that belongs to a column set.
  std::size_t sliceOffset(int columnSet) const {
    return m_slices[static_cast<std::size_t>(columnSet)];
  }

 private:
  std::size_t m_width = kRowCountSize;
  std::vector<std::size_t> m_slices;        // one a column set
  std::vector<std::size_t> m_chunkEntries;  // one a column
};

}  // namespace kelvarin
