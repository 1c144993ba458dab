// The blocks of a part of the table whose descriptors are lost, found again in the side files.
//
// Inside a set's side file chunks come in the set's column order, block after block, so counting
// chunks from a known position gives block and column. After damage the count starts anew: then the
// kinds of the chunks must fit one column order only, or the chunks must reach a known end, from
// where they are counted backwards. Blocks of several sets belong together by their numbers; where
// a set's numbers are not known, its blocks are not used, for rows would be mixed up.
// Used by table_recovery.cpp. Threads: one at a time.  Errors: blocks that are not found; never
// throws but for a lack of memory.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/reader/chunk_chain.h"
#include "columnar/reader/decoded_block.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

// A column set with columns, and its side file.
struct SideFile {
  int set = 0;
  std::size_t firstColumn = 0;
  std::size_t columnCount = 0;
  std::unique_ptr<ByteSource> source;
  std::unique_ptr<ChunkFinder> finder;
};

// Where descriptors are missing.
struct DescriptorGap {
  struct Side {
    std::uint64_t begin = 0;  // of a chunk
    bool isLastChunk = false;  // it is the last one of the block before
    std::optional<std::uint64_t> end;  // where the next known block begins; else the file's end
  };

  std::uint64_t blocksBefore = 0;         // with descriptors
  std::vector<Side> sides;                // one a side file
  std::optional<std::uint64_t> blockCount;  // as the header has it
};

class LostBlocks {
 public:
  struct Chunk {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
  };
  struct Block {
    std::vector<Chunk> chunks;  // one a column of the file
    bool isLast = false;        // it may have fewer rows than the others
  };

  LostBlocks(const GelFile& file, std::vector<SideFile>& sides, const DescriptorGap& gap);

  // The next block of which every set has all chunks.
  bool next(Block& block);
  // How many there should be; nothing when that cannot be told.
  std::optional<std::uint64_t> blockCount() const { return m_blockCount; }
  // Chunks were passed over because their block could not be told, or were not found at all.
  bool hasDamage() const { return m_hasDamage; }
  // Some sets have more than the blocks that were found.
  bool hasUnfinished() const { return m_hasUnfinished; }

 private:
  // Blocks of a set that stand back to back.
  struct Run {
    ChunkChain chain;
    std::size_t first = 0;       // the chunk with which a block begins
    bool isCountedFromBegin = false;
    bool reachesEnd = false;     // with its last block

    std::size_t blockCount(std::size_t columns) const {
      return chain.size() > first ? (chain.size() - first) / columns : 0;
    }
  };
  using Runs = std::vector<Run>;
  // A block's first chunk.
  struct Place {
    const Run* run = nullptr;
    std::size_t chunk = 0;
  };

  Runs findRuns(SideFile& side, const DescriptorGap::Side& gap);
  std::optional<std::size_t> firstOfBlock(SideFile& side, const ChunkChain& chain, bool hasEnd);
  bool fits(const std::vector<unsigned>& kinds, const SideFile& side, std::size_t column) const;
  unsigned kindsOf(Bytes chunk);
  void countBlocks(const DescriptorGap& gap);
  void listBlocks();
  void listNumbers(std::uint64_t first, std::uint64_t end);
  std::optional<Place> find(std::size_t side, std::uint64_t number) const;
  void add(Block& block, std::size_t side, const Place& place) const;

  const GelFile& m_file;
  std::vector<SideFile>& m_sides;
  std::vector<Runs> m_runs;  // one a side file
  std::optional<std::uint64_t> m_blockCount;
  bool m_hasDamage = false;
  bool m_hasUnfinished = false;
  std::vector<Place> m_places;  // block after block, one a side file
  std::size_t m_nextPlace = 0;
  bool m_isAtTableEnd = false;
  ChunkDecoder m_decoder;
  DecodedColumn m_scratch;
};

}  // namespace kelvarin
