// Finds chunks of a side file by their own bytes, where no descriptor leads to them.
//
// A chunk begins with its checksum and ends with its Snappy stream, so contiguous chunks can be
// followed. After damage the next chunk is searched for byte by byte.
// Used by lost_blocks.cpp.
// Errors: a shorter chain; throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "columnar/reader/byte_source.h"
#include "columnar/reader/file_window.h"

namespace kelvarin {

// Contiguous chunks.
struct ChunkChain {
  std::vector<std::uint64_t> begins;  // in the side file
  std::uint64_t end = 0;              // of the last chunk

  std::size_t size() const { return begins.size(); }
  std::uint64_t endOf(std::size_t chunk) const {
    return chunk + 1 < begins.size() ? begins[chunk + 1] : end;
  }
};

// Asked from time to time during a search; true ends it early.
using IsStopped = std::function<bool()>;

class ChunkFinder {
 public:
  // Both outlive the finder.
  ChunkFinder(const ByteSource& source, const IsStopped& isStopped);

  // The chunks from `offset` on, up to `limit`. A chunk with a wrong checksum belongs to the chain
  // if its stream still leads to a whole chunk, or to the limit.
  ChunkChain follow(std::uint64_t offset, std::uint64_t limit);
  // The first whole chunk from `offset` on. Nothing: there is none, or the search would take too
  // long.
  std::optional<std::uint64_t> search(std::uint64_t offset, std::uint64_t limit);
  Bytes bytes(std::uint64_t begin, std::uint64_t end);

 private:
  enum class Finding { whole, wrongChecksum, cut, none };

  // Judges the chunk that begins at `offset`, and finds its end.
  Finding examine(std::uint64_t offset, std::uint64_t limit, std::uint64_t& end);
  // The same for bytes; `cut`: the chunk may continue after them.
  Finding judge(Bytes bytes, std::uint64_t& length);
  bool leadsOn(std::uint64_t offset, std::uint64_t limit);

  const ByteSource& m_source;
  const IsStopped& m_isStopped;
  FileWindow m_window;
  std::uint64_t m_bytesLeftToSearch;
};

}  // namespace kelvarin
