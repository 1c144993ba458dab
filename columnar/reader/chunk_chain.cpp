#include "columnar/reader/chunk_chain.h"

#include <algorithm>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"

namespace kelvarin {

namespace {

// Larger chunks are read again with a larger window.
constexpr std::uint64_t kFirstWindow = 256 << 10;
// A search normally examines a position once or twice, while forged bytes could make it examine
// each position from all positions before it.
constexpr std::uint64_t kSearchAlwaysAllowed = 256 << 20;
constexpr std::uint64_t kSearchPerByte = 32;
// Between two checks whether a search is to end.
constexpr std::uint64_t kPositionsBetweenChecks = 4096;

}  // namespace

ChunkFinder::ChunkFinder(const ByteSource& source, const IsStopped& isStopped)
    : m_source(source),
      m_isStopped(isStopped),
      m_window(source),
      m_bytesLeftToSearch(kSearchAlwaysAllowed + kSearchPerByte * source.storedSize()) {}

ChunkChain ChunkFinder::follow(std::uint64_t offset, std::uint64_t limit) {
  ChunkChain chain;
  chain.end = offset;
  std::uint64_t end = 0;
  while (chain.end < limit && !m_isStopped()) {
    const Finding finding = examine(chain.end, limit, end);
    const bool belongs =
        finding == Finding::whole || (finding == Finding::wrongChecksum && leadsOn(end, limit));
    if (!belongs) {
      break;
    }
    chain.begins.push_back(chain.end);
    chain.end = end;
  }
  return chain;
}

bool ChunkFinder::leadsOn(std::uint64_t offset, std::uint64_t limit) {
  std::uint64_t end = 0;
  return offset == limit || examine(offset, limit, end) == Finding::whole;
}

std::optional<std::uint64_t> ChunkFinder::search(std::uint64_t offset, std::uint64_t limit) {
  std::uint64_t end = 0;
  for (; offset < limit && m_bytesLeftToSearch > 0; ++offset) {
    if (examine(offset, limit, end) == Finding::whole) {
      return offset;
    }
    if (offset % kPositionsBetweenChecks == 0 && m_isStopped()) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

Bytes ChunkFinder::bytes(std::uint64_t begin, std::uint64_t end) {
  return m_window.at(begin, static_cast<std::size_t>(end - begin));
}

ChunkFinder::Finding ChunkFinder::examine(std::uint64_t offset, std::uint64_t limit,
                                          std::uint64_t& end) {
  const std::uint64_t available = std::min(limit - offset, m_source.largestPart());
  Bytes bytes = m_window.known(offset);
  for (;;) {
    bytes = bytes.first(std::min<std::uint64_t>(bytes.size(), available));
    const Finding finding = judge(bytes, end);
    if (finding != Finding::cut || bytes.size() == available) {
      end += offset;
      return finding;
    }
    const std::size_t before = bytes.size();
    const std::uint64_t wanted = std::max<std::uint64_t>(4 * before, kFirstWindow);
    bytes = m_window.at(offset, std::min(wanted, available));
    if (bytes.size() <= before) {
      return Finding::cut;  // the file has become shorter
    }
  }
}

ChunkFinder::Finding ChunkFinder::judge(Bytes bytes, std::uint64_t& length) {
  length = 0;
  if (bytes.size() < kMinChunkSize) {
    return Finding::cut;
  }
  const Bytes stream = bytes.subspan(kChunkChecksumSize);
  std::size_t streamLength = 0;
  const ReadStatus status = findSnappyEnd(stream, streamLength);
  m_bytesLeftToSearch -= std::min<std::uint64_t>(m_bytesLeftToSearch, streamLength + 1);
  if (status != ReadStatus::ok) {
    return status == ReadStatus::truncated ? Finding::cut : Finding::none;
  }
  // No chunk is without values, while zeros look like an empty one with a right checksum.
  if (announcedRawSize(stream).value_or(0) == 0) {
    return Finding::none;
  }
  length = kChunkChecksumSize + streamLength;
  const bool isWhole =
      loadPacked<std::uint32_t>(bytes.data()) == checksum(stream.first(streamLength));
  return isWhole ? Finding::whole : Finding::wrongChecksum;
}

}  // namespace kelvarin
