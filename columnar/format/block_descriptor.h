// What the main file says about one block of rows: how many rows it has, where each column set keeps
// it, where in there each column's chunk begins, and what values the column has.
//
// All descriptors of a file have the same width and the same places. Written by
// writer/column_set_worker.cpp, read by reader/. Layout: docs/gel-format.md, "Block descriptors".
// Threads: plain values.
#pragma once

#include <span>
#include <vector>

#include "base/byte_cursor.h"
#include "columnar/format/column_summary.h"
#include "columnar/format/metadata_block.h"

namespace kelvarin {

inline constexpr std::size_t kRowCountSize = 4;
inline constexpr std::size_t kBlockOffsetSize = 8;
// Each column has the position of its chunk, a null flag and the summary of its values.
inline constexpr std::size_t kPositionSize = 4;
inline constexpr std::size_t kNullFlagSize = 1;
inline constexpr std::uint64_t kPositionsAreDifferences = 1ull << 63;

// Where a column set's block begins in its side file.
struct BlockPlace {
  std::uint64_t offset = 0;
  // Each chunk position is the distance from the chunk before, since they do not all fit 32 bits.
  bool hasDifferences = false;
  friend bool operator==(const BlockPlace&, const BlockPlace&) = default;
};

// The places of everything in the descriptors of a file.
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

  BlockPlace place(const unsigned char* descriptor, int columnSet) const;
  void setPlace(unsigned char* descriptor, int columnSet, BlockPlace place) const;

  // The column counts in the order of the metadata block. A position is the distance from the
  // block's begin, or see BlockPlace::hasDifferences.
  std::uint32_t chunkPosition(const unsigned char* descriptor, std::size_t column) const {
    return loadPacked<std::uint32_t>(descriptor + m_chunkEntries[column]);
  }
  void setChunkPosition(unsigned char* descriptor, std::size_t column,
                        std::uint32_t position) const {
    storePacked(descriptor + m_chunkEntries[column], position);
  }

  // Sets the place of a column set's block and the positions of its chunks, which count from the
  // block's begin. They become differences as soon as one of them does not fit 32 bits; the
  // distance between two always does.
  void setChunks(unsigned char* descriptor, int columnSet, std::uint64_t offset,
                 std::size_t firstColumn, std::span<const std::uint64_t> positions) const;

  // Summary is the one of the column's type. False when the bytes cannot be one.
  template <typename Summary>
  [[nodiscard]] bool readSummary(const unsigned char* descriptor, std::size_t column,
                                 Summary& summary) const {
    return loadSummary(descriptor + m_chunkEntries[column] + kPositionSize, summary);
  }
  template <typename Summary>
  void writeSummary(unsigned char* descriptor, std::size_t column, const Summary& summary) const {
    storeSummary(descriptor + m_chunkEntries[column] + kPositionSize, summary);
  }

  // The part of a descriptor that belongs to a column set.
  std::size_t sliceOffset(int columnSet) const {
    return m_slices[static_cast<std::size_t>(columnSet)];
  }
  std::size_t sliceWidth(int columnSet) const {
    return m_slices[static_cast<std::size_t>(columnSet) + 1] - sliceOffset(columnSet);
  }

 private:
  std::size_t m_width = kRowCountSize;
  std::vector<std::size_t> m_slices;        // one a column set, and the end
  std::vector<std::size_t> m_chunkEntries;  // one a column
};

}  // namespace kelvarin
