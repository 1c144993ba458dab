// The bytes of the chosen columns of one block, not decoded yet.
//
// Made by chunk_reader.h, decoded by block_decoder.h and by verification.
// Threads: any; it does not depend on the reader that made it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"
#include "columnar/reader/block_scan.h"

namespace kelvarin {

struct FetchedBlock {
  struct Chunk {
    std::uint32_t column = 0;  // an index of GelFile::columns()
    // ok: `bytes` have been read; decoding shows whether they are sound.
    ReadStatus status = ReadStatus::corrupted;
    std::uint64_t offset = 0;  // in its side file
    Bytes bytes;
  };

  FetchedBlock(const BlockInfo& block, std::size_t descriptorWidth)
      : index(block.index),
        firstRow(block.firstRow),
        rowCount(block.rowCount),
        isLastKnown(block.following == nullptr),
        descriptor(block.descriptor, block.descriptor + descriptorWidth) {}

  std::uint64_t lastRow() const { return firstRow + rowCount - 1; }

  std::uint64_t index;  // among the file's blocks
  std::uint64_t firstRow;
  std::uint32_t rowCount;
  bool isLastKnown;
  std::vector<unsigned char> descriptor;
  std::vector<Chunk> chunks;                               // in the order of the chosen columns
  std::vector<std::shared_ptr<const ByteBuffer>> buffers;  // that the chunks lie in
};

}  // namespace kelvarin
