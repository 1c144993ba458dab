// Reads the rows of a columnar file, block after block.
//
// Used by the reading action through blocks_ahead.h, and by `kelvarin gel`.
// Errors: events; never logs, never throws.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "columnar/reader/chunk_reader.h"
#include "columnar/reader/read_event.h"

namespace kelvarin {

class BlockReader {
 public:
  // False: the block is skipped without being read.
  using WantsBlock = std::function<bool(const GelFile& file, const BlockInfo& block)>;

  // `columns` are indices of GelFile::columns(), in the order of the output rows. The error is the
  // path of a side file that cannot be opened. `file` outlives the reader.
  static Result<std::unique_ptr<BlockReader>, std::string> open(
      const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock = {});

  // `spare`, when there is one, is filled again.
  ReadEvent next(std::unique_ptr<DecodedBlock> spare);
  // Reads a block that another scan of the file has found. Blocks are read in order, all by next()
  // or all by read().
  ReadEvent read(const BlockInfo& block, std::unique_ptr<DecodedBlock> spare);

 private:
  BlockReader(const GelFile& file, const std::vector<std::size_t>& columns,
              std::unique_ptr<ChunkReader> chunks, WantsBlock wantsBlock);

  ReadEvent nextEvent(std::unique_ptr<DecodedBlock> spare);
  ReadStatus decodeColumn(const BlockInfo& block, std::size_t index, DecodedColumn& values);
  bool isToCompare(const BlockInfo& block, MetaTypeColumn type) const;
  ReadEvent endWith(ReadEvent event);

  const GelFile& m_file;
  const std::vector<std::size_t> m_columns;
  std::vector<MetaTypeColumn> m_types;  // of the columns
  const std::unique_ptr<ChunkReader> m_chunks;
  const WantsBlock m_wantsBlock;
  BlockScan m_scan;
  bool m_isEnded = false;
};

}  // namespace kelvarin
