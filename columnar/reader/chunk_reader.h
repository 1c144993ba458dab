// Reads and decodes the chunks of chosen columns, a block at a time.
//
// Only the bytes of these columns are read, neighbours in one go. Used by block_reader.cpp and
// verification.
// Threads: one at a time.  Errors: ReadStatus; never logs, never throws but for a lack of memory.
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
  // Finds the chunks of a block without reading them. Blocks are found or loaded in their order,
  // each once: no byte of a file belongs to two of them.
  void find(const BlockInfo& block);
  // Finds and reads them; the columns' states follow from it.
  void load(const BlockInfo& block);
  // `place` counts in the list given to open(). The loaded chunk's values replace what `column`
  // held; on anything but ok they are unspecified.
  [[nodiscard]] ReadStatus decode(std::size_t place, DecodedColumn& column);
  // Whether the loaded chunk's bytes are there; what they are worth shows when they are decoded.
  ReadStatus loadStatus(std::size_t place) const { return m_chunks[place].status; }
  // Of the chunk decoded last, when its layout byte was the trouble; else -1.
  int unknownLayout() const { return m_decoder.unknownLayout(); }
  // Of the loaded chunk, in its side file.
  std::uint64_t chunkOffset(std::size_t place) const { return m_chunks[place].begin; }
  // Nothing for a chunk out of bounds, and for one that was only found and whose end is told by its
  // own bytes.
  std::optional<std::uint64_t> chunkSize(std::size_t place) const;

 private:
  // A column's chunk of the loaded block.
  struct Chunk {
    std::uint64_t begin = 0;  // in the side file
    std::uint64_t end = 0;
    std::size_t inBuffer = 0;  // its first byte among the bytes read
    std::uint32_t column = 0;
    ReadStatus status = ReadStatus::corrupted;
    bool hasEnd = false;  // otherwise its Snappy stream tells
    bool endsWithFile = false;
  };

  // The chosen columns of one column set.
  struct Set {
    int number = 0;
    std::size_t firstColumn = 0;  // of the set, in the file's list
    std::size_t endColumn = 0;
    std::unique_ptr<ByteSource> source;
    std::vector<std::size_t> places;  // in m_chunks, by column
    std::vector<std::uint64_t> positions;
    std::uint64_t floor = 0;        // what lies before has been read
    std::uint64_t searchLimit = 0;  // bytes that may yet be read to find the ends of streams
    std::uint64_t knownSize = 0;    // of the source, which may have grown since
    std::uint64_t largestPart = 0;  // of the source
    ByteBuffer bytes;               // of the loaded chunks
    std::uint64_t aheadBegin = 0;   // where `bytes` begin, when they are one piece of the source
    bool isAhead = false;           // they are, and following chunks may be among them
  };

  explicit ChunkReader(const GelFile& file) : m_file(file) {}

  Status<std::string> openSets(const std::vector<std::size_t>& columns);
  void findChunks(Set& set, const BlockInfo& block);
  void findPositions(Set& set, const BlockInfo& block) const;
  void readChunks(Set& set);
  bool takeFromAhead(Set& set);
  void readRun(Set& set, std::size_t first, std::size_t end);
  static bool isBeyondLimits(Set& set, std::uint64_t size);
  static bool hasReached(Set& set, std::uint64_t end);
  void place(Chunk& chunk, std::size_t inBuffer, std::uint64_t endOfBytes);
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
