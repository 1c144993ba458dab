// Reads and decodes the chunks of chosen columns, a block at a time.
//
// Only the bytes of these columns are read, neighbouring chunks with one call. Used by
// block_reader.cpp and verification.
// Errors: ReadStatus; never logs, throws only std::bad_alloc.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "columnar/codecs/chunk_codec.h"
#include "columnar/reader/block_scan.h"
#include "columnar/reader/decoded_block.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

class ChunkReader {
 public:
  // Opens the side files of the columns, which are indices of GelFile::columns(). The error is the
  // path of a side file that cannot be opened. `file` outlives the reader.
  static Result<std::unique_ptr<ChunkReader>, std::string> open(
      const GelFile& file, const std::vector<std::size_t>& columns);

  std::size_t columnCount() const { return m_chunks.size(); }
  // Locates the chunks of a block without reading them. Blocks are located or loaded in order, each
  // once: no byte of a file belongs to two of them.
  void locate(const BlockInfo& block);
  // Locates and reads them.
  void load(const BlockInfo& block);
  // `index` is that of the column in the list for open(). The values of the loaded chunk replace
  // the content of `column`; after any status but ok they are unspecified.
  [[nodiscard]] ReadStatus decode(std::size_t index, DecodedColumn& column);
  // Whether the bytes of the loaded chunk have been read; decoding shows whether they are sound.
  ReadStatus loadStatus(std::size_t index) const { return m_chunks[index].status; }
  // The encoding byte of the chunk decoded last when it was refused for being unknown, else -1.
  int unknownEncoding() const { return m_decoder.unknownEncoding(); }
  // The offset of the loaded chunk in its side file.
  std::uint64_t chunkOffset(std::size_t index) const { return m_chunks[index].begin; }
  // Nothing for a chunk out of bounds, and for one that was only located and whose end only its own
  // bytes show.
  std::optional<std::uint64_t> chunkSize(std::size_t index) const;

 private:
  // A column's chunk of the loaded block.
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
    ByteBuffer bytes;               // of the loaded chunks
    std::uint64_t aheadBegin = 0;   // of `bytes` in the source, when contiguous
    bool isAhead = false;           // they are, and may contain the following chunks
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
  std::uint32_t m_rowCount = 0;
  ChunkDecoder m_decoder;
};

}  // namespace kelvarin
