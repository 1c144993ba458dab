// Finds blocks in the side files where their descriptors are lost.
//
// A side file has the chunks of its set in column order, block after block, so counting chunks from
// a known position yields block and column. After damage the count starts anew: the kinds of the
// chunks must then fit a single column order, or the chunks must reach a known end, from which they
// are counted backwards. Blocks of several sets belong together by their numbers; blocks without a
// known number are not used, since rows would be mixed up.
// Used by table_recovery.cpp.
// Errors: blocks that are not found; throws only std::bad_alloc.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/reader/chunk_chain.h"
#include "columnar/reader/column_decoding.h"
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

// A range of blocks without descriptors.
struct DescriptorGap {
  struct Side {
    std::uint64_t begin = 0;           // of a chunk
    bool isLastChunk = false;          // it is the last one of the previous block
    std::optional<std::uint64_t> end;  // begin of the next known block; else the end of file
  };

  std::uint64_t blocksBefore = 0;           // with descriptors
  std::vector<Side> sides;                  // one a side file
  std::optional<std::uint64_t> blockCount;  // as the header says
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

  // The next block with all chunks of every set.
  bool next(Block& block);
  // The number of lost blocks; nothing when it is unknown.
  std::optional<std::uint64_t> blockCount() const { return m_blockCount; }
  // Chunks were not found, or were skipped because their block is unknown.
  bool hasDamage() const { return m_hasDamage; }
  // Some sets have chunks after the blocks that were found.
  bool hasUnfinished() const { return m_hasUnfinished; }

 private:
  // Contiguous blocks of a set.
  struct Run {
    ChunkChain chain;
    std::size_t first = 0;  // the first chunk of a block
    bool isCountedFromBegin = false;
    bool reachesEnd = false;  // its last block ends where the gap does

    std::size_t blockCount(std::size_t columns) const {
      return chain.size() > first ? (chain.size() - first) / columns : 0;
    }
  };
  using Runs = std::vector<Run>;
  // The first chunk of a block.
  struct FirstChunk {
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
  std::optional<FirstChunk> find(std::size_t side, std::uint64_t number) const;
  void add(Block& block, std::size_t side, const FirstChunk& first) const;

  const GelFile& m_file;
  std::vector<SideFile>& m_sides;
  std::vector<Runs> m_runs;  // one a side file
  std::optional<std::uint64_t> m_blockCount;
  bool m_hasDamage = false;
  bool m_hasUnfinished = false;
  std::vector<FirstChunk> m_firstChunks;  // block after block, one a side file
  std::size_t m_nextFirstChunk = 0;
  bool m_isAtTableEnd = false;
  ChunkDecoder m_decoder;
  DecodedColumn m_scratch;
};

}  // namespace kelvarin
