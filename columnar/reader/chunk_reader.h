// Reads the chunks of chosen columns, a block at a time.
//
// Only the bytes of these columns are read, neighbouring chunks with one call. Used by
// block_units.cpp, by verification and by the recovery of tables.
// Threads: one at a time; a fetched block is on its own.
// Errors: ReadStatus; never logs, throws only std::bad_alloc.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "columnar/reader/block_scan.h"
#include "columnar/reader/fetched_block.h"

namespace kelvarin {

class ChunkReader {
 public:
  // Opens the side files of the columns, which are indices of GelFile::columns(). The error is the
  // path of a side file that cannot be opened. `file` outlives the reader.
  static Result<std::unique_ptr<ChunkReader>, std::string> open(
      const GelFile& file, const std::vector<std::size_t>& columns);

  std::size_t columnCount() const { return m_chunks.size(); }
  // Locates the chunks of a block without reading them. Blocks are located or fetched in order,
  // each once: no byte of a file belongs to two of them.
  void locate(const BlockInfo& block);
  // Locates and reads them.
  FetchedBlock fetch(const BlockInfo& block);
  // The offset of the located chunk in its side file; `index` is that of the column in the list for
  // open().
  std::uint64_t chunkOffset(std::size_t index) const { return m_chunks[index].begin; }
  // Nothing for a chunk out of bounds, and for one that was only located and whose end only its own
  // bytes show.
  std::optional<std::uint64_t> chunkSize(std::size_t index) const;

 private:
  // A column's chunk of the current block.
  struct Chunk {
    std::uint64_t begin = 0;  // in the side file
    std::uint64_t end = 0;
    std::size_t bufferOffset = 0;  // in the bytes of its set
    std::uint32_t column = 0;
    ReadStatus status = ReadStatus::corrupted;
    bool hasEnd = false;  // otherwise it ends with its Snappy stream
    bool endsWithFile = false;
  };

  // The chosen columns of one column set.
  struct Set {
    int number = 0;
    std::size_t firstColumn = 0;  // of the set, in the file's list
    std::size_t endColumn = 0;
    std::unique_ptr<ByteSource> source;
    std::vector<std::size_t> chunks;  // indices in m_chunks, by column
    std::vector<std::uint64_t> positions;
    std::uint64_t floor = 0;        // the bytes before it have been read
    std::uint64_t searchLimit = 0;  // bytes that may still be read to find the ends of streams
    std::uint64_t knownSize = 0;    // of the source, which may grow meanwhile
    std::uint64_t largestPart = 0;  // of the source
    // Of the chunks that were read last, shared with fetched blocks: it stays as it is once a block
    // has been fetched.
    std::shared_ptr<ByteBuffer> bytes = std::make_shared<ByteBuffer>();
    std::uint64_t aheadBegin = 0;  // of `bytes` in the source, when contiguous
    bool isAhead = false;          // they are, and may contain the following chunks
  };

  explicit ChunkReader(const GelFile& file) : m_file(file) {}

  Status<std::string> openSets(const std::vector<std::size_t>& columns);
  void locateChunks(Set& set, const BlockInfo& block);
  void findPositions(Set& set, const BlockInfo& block) const;
  void readChunks(Set& set);
  bool takeReadAhead(Set& set);
  void readRun(Set& set, std::size_t first, std::size_t end);
  static bool isBeyondLimits(Set& set, std::uint64_t size);
  static bool hasReached(Set& set, std::uint64_t end);
  void locateInBuffer(Chunk& chunk, std::size_t bufferOffset, std::uint64_t endOfBytes);
  void readToStreamEnd(Set& set, Chunk& chunk);
  // Whether a chunk that ends with its file was cut.
  bool isCut(const Chunk& chunk) const;
  Bytes bytesOf(const Chunk& chunk) const;

  const GelFile& m_file;
  std::vector<Chunk> m_chunks;
  std::vector<Set> m_sets;
  std::vector<std::size_t> m_setOfChunk;
};

}  // namespace kelvarin
