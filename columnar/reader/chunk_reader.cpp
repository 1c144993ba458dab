#include "columnar/reader/chunk_reader.h"

#include <algorithm>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

// Gaps between chunks up to this size are read along with them.
constexpr std::uint64_t kLargestGap = 16 << 10;
// Smaller blocks are read along with those that follow them.
constexpr std::uint64_t kSmallBlock = 16 << 10;
constexpr std::uint64_t kAhead = 64 << 10;
constexpr std::uint64_t kFirstWindow = 1 << 20;
constexpr std::uint64_t kSearchAlwaysAllowed = 64 << 20;

}  // namespace

Result<std::unique_ptr<ChunkReader>, std::string> ChunkReader::open(
    const GelFile& file, const std::vector<std::size_t>& columns) {
  std::unique_ptr<ChunkReader> reader(new ChunkReader(file));
  if (const Status<std::string> status = reader->openSets(columns); !status) {
    return Failure{status.error()};
  }
  return reader;
}

Status<std::string> ChunkReader::openSets(const std::vector<std::size_t>& columns) {
  m_chunks.reserve(columns.size());
  std::vector<std::vector<std::size_t>> chunksOfSets(
      static_cast<std::size_t>(m_file.columnSetCount()));
  for (const std::size_t column : columns) {
    chunksOfSets[static_cast<std::size_t>(m_file.column(column).columnSet)].push_back(
        m_chunks.size());
    m_chunks.push_back(Chunk{.column = static_cast<std::uint32_t>(column)});
  }
  m_setOfChunk.resize(m_chunks.size());
  std::size_t next = 0;
  for (int number = 0; number < m_file.columnSetCount(); ++number) {
    Set set;
    set.number = number;
    set.firstColumn = next;
    while (next < m_file.columns().size() && m_file.column(next).columnSet == number) {
      ++next;
    }
    set.endColumn = next;
    set.chunks = std::move(chunksOfSets[static_cast<std::size_t>(number)]);
    if (set.chunks.empty()) {
      continue;
    }
    set.source = m_file.openSide(number);
    if (!set.source) {
      return Failure{m_file.sidePath(number)};
    }
    set.knownSize = set.source->size();
    set.largestPart = set.source->largestPart();
    set.searchLimit = kSearchAlwaysAllowed + 4 * std::min(set.knownSize, set.largestPart);
    std::sort(set.chunks.begin(), set.chunks.end(), [this](std::size_t left, std::size_t right) {
      return m_chunks[left].column < m_chunks[right].column;
    });
    for (const std::size_t index : set.chunks) {
      m_setOfChunk[index] = m_sets.size();
    }
    m_sets.push_back(std::move(set));
  }
  return Done{};
}

void ChunkReader::locate(const BlockInfo& block) {
  for (Set& set : m_sets) {
    locateChunks(set, block);
  }
}

FetchedBlock ChunkReader::fetch(const BlockInfo& block) {
  locate(block);
  FetchedBlock fetched(block, m_file.descriptorLayout().width());
  fetched.buffers.reserve(m_sets.size());
  for (Set& set : m_sets) {
    readChunks(set);
    fetched.buffers.push_back(set.bytes);
  }
  fetched.chunks.reserve(m_chunks.size());
  for (const Chunk& chunk : m_chunks) {
    const bool isThere = chunk.status == ReadStatus::ok;
    fetched.chunks.push_back(
        {chunk.column, chunk.status, chunk.begin, isThere ? bytesOf(chunk) : Bytes()});
  }
  return fetched;
}

std::optional<std::uint64_t> ChunkReader::chunkSize(std::size_t index) const {
  const Chunk& chunk = m_chunks[index];
  const bool isKnown = chunk.status == ReadStatus::ok && chunk.hasEnd;
  return isKnown ? std::optional(chunk.end - chunk.begin) : std::nullopt;
}

// The offsets of all chunks of the set in its side file.
void ChunkReader::findPositions(Set& set, const BlockInfo& block) const {
  const DescriptorLayout& layout = m_file.descriptorLayout();
  const BlockLocation location = layout.blockLocation(block.descriptor, set.number);
  set.positions.clear();
  std::uint64_t position = location.offset;
  for (std::size_t column = set.firstColumn; column < set.endColumn; ++column) {
    const std::uint32_t entry = layout.chunkPosition(block.descriptor, column);
    position = (location.hasDeltas ? position : location.offset) + entry;
    set.positions.push_back(position);
  }
}

void ChunkReader::locateChunks(Set& set, const BlockInfo& block) {
  findPositions(set, block);
  for (const std::size_t chosen : set.chunks) {
    Chunk& chunk = m_chunks[chosen];
    const std::size_t inSet = chunk.column - set.firstColumn;
    chunk.begin = set.positions[inSet];
    chunk.hasEnd = true;
    chunk.endsWithFile = false;
    if (inSet + 1 < set.positions.size()) {
      chunk.end = set.positions[inSet + 1];
    } else if (block.following != nullptr) {
      chunk.end = m_file.descriptorLayout().blockLocation(block.following, set.number).offset;
    } else {
      chunk.hasEnd = block.endsWithFile;
      chunk.endsWithFile = block.endsWithFile;
      set.knownSize = set.source->size();
      chunk.end = std::max(set.knownSize, chunk.begin);
    }
    if (chunk.begin < set.floor || chunk.end < chunk.begin) {
      chunk.status = ReadStatus::corrupted;
    } else if (chunk.hasEnd && isBeyondLimits(set, chunk.end - chunk.begin)) {
      chunk.status = ReadStatus::beyondLimits;
    } else if (!hasReached(set, std::max(chunk.begin + 1, chunk.end))) {
      chunk.status = ReadStatus::truncated;
    } else {
      chunk.status = ReadStatus::ok;
      set.floor = chunk.hasEnd ? chunk.end : chunk.begin;
    }
  }
}

// In a file with holes a chunk may claim more than all that the file has.
bool ChunkReader::isBeyondLimits(Set& set, std::uint64_t size) {
  if (size > set.largestPart) {
    set.largestPart = set.source->largestPart();
  }
  return size > set.largestPart;
}

// The size is determined again only where it matters.
bool ChunkReader::hasReached(Set& set, std::uint64_t end) {
  if (end > set.knownSize) {
    set.knownSize = set.source->size();
  }
  return end <= set.knownSize;
}

// Chunks with a known end are read in runs of neighbours.
void ChunkReader::readChunks(Set& set) {
  if (takeReadAhead(set)) {
    return;
  }
  set.bytes = std::make_shared<ByteBuffer>();
  set.isAhead = false;
  const auto isReadable = [&](std::size_t i) {
    const Chunk& chunk = m_chunks[set.chunks[i]];
    return chunk.status == ReadStatus::ok && chunk.hasEnd;
  };
  for (std::size_t first = 0; first < set.chunks.size();) {
    if (!isReadable(first)) {
      ++first;
      continue;
    }
    std::size_t end = first + 1;
    while (end < set.chunks.size() && isReadable(end)) {
      const std::uint64_t last = m_chunks[set.chunks[end - 1]].end;
      const std::uint64_t begin = m_chunks[set.chunks[end]].begin;
      if (begin < last || begin - last > kLargestGap) {
        break;
      }
      ++end;
    }
    readRun(set, first, end);
    first = end;
  }
  Chunk& last = m_chunks[set.chunks.back()];
  if (last.status == ReadStatus::ok && !last.hasEnd) {
    readToStreamEnd(set, last);
  }
}

bool ChunkReader::takeReadAhead(Set& set) {
  const std::uint64_t endOfBytes = set.aheadBegin + set.bytes->size();
  for (const std::size_t chosen : set.chunks) {
    const Chunk& chunk = m_chunks[chosen];
    if (!set.isAhead || chunk.status != ReadStatus::ok || !chunk.hasEnd ||
        chunk.begin < set.aheadBegin || chunk.end > endOfBytes) {
      return false;
    }
  }
  for (const std::size_t chosen : set.chunks) {
    Chunk& chunk = m_chunks[chosen];
    locateInBuffer(chunk, chunk.begin - set.aheadBegin, endOfBytes);
  }
  return true;
}

void ChunkReader::locateInBuffer(Chunk& chunk, std::size_t bufferOffset, std::uint64_t endOfBytes) {
  chunk.bufferOffset = bufferOffset;
  if (chunk.end > endOfBytes || (chunk.endsWithFile && isCut(chunk))) {
    chunk.status = ReadStatus::truncated;
  }
}

void ChunkReader::readRun(Set& set, std::size_t first, std::size_t end) {
  const std::uint64_t begin = m_chunks[set.chunks[first]].begin;
  std::uint64_t size = m_chunks[set.chunks[end - 1]].end - begin;
  const std::size_t bufferOffset = set.bytes->size();
  if (size < kSmallBlock && end - first == set.endColumn - set.firstColumn) {
    size = std::clamp(set.knownSize - begin, size, kAhead);
    set.isAhead = true;
    set.aheadBegin = begin;
  }
  const std::size_t count = set.source->readAt(begin, set.bytes->append(size), size);
  set.bytes->resize(bufferOffset + count);
  for (std::size_t i = first; i < end; ++i) {
    Chunk& chunk = m_chunks[set.chunks[i]];
    locateInBuffer(chunk, bufferOffset + (chunk.begin - begin), begin + count);
  }
}

void ChunkReader::readToStreamEnd(Set& set, Chunk& chunk) {
  chunk.bufferOffset = set.bytes->size();
  const std::uint64_t available = set.source->size() - chunk.begin;
  for (std::uint64_t window = kFirstWindow;; window *= 2) {
    const std::size_t wanted = static_cast<std::size_t>(std::min(window, available));
    if (wanted > set.searchLimit) {
      chunk.status = ReadStatus::corrupted;
      return;
    }
    set.searchLimit -= wanted;
    set.bytes->resize(chunk.bufferOffset + wanted);
    const std::size_t count =
        set.source->readAt(chunk.begin, set.bytes->data() + chunk.bufferOffset, wanted);
    if (count <= kChunkChecksumSize) {
      chunk.status = ReadStatus::truncated;
      return;
    }
    const Bytes stream(set.bytes->data() + chunk.bufferOffset + kChunkChecksumSize,
                       count - kChunkChecksumSize);
    std::size_t length = 0;
    chunk.status = findSnappyEnd(stream, length);
    chunk.end = chunk.begin + kChunkChecksumSize + length;
    if (chunk.status != ReadStatus::truncated || count < wanted || wanted == available) {
      return;
    }
  }
}

bool ChunkReader::isCut(const Chunk& chunk) const {
  const Bytes bytes = bytesOf(chunk);
  std::size_t length = 0;
  return bytes.size() <= kChunkChecksumSize ||
         findSnappyEnd(bytes.subspan(kChunkChecksumSize), length) == ReadStatus::truncated;
}

Bytes ChunkReader::bytesOf(const Chunk& chunk) const {
  const Set& set = m_sets[m_setOfChunk[static_cast<std::size_t>(&chunk - m_chunks.data())]];
  return {set.bytes->data() + chunk.bufferOffset,
          static_cast<std::size_t>(chunk.end - chunk.begin)};
}

}  // namespace kelvarin
