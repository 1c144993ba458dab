// A buffer for bytes of a file that are read in order, often a few at a time.
//
// Bytes that have been read are not read again, so it suits files that only grow. Used by
// descriptor_reader.cpp and chunk_chain.cpp.
// Errors: fewer bytes than asked for; throws only std::bad_alloc.
#pragma once

#include "columnar/codecs/byte_buffer.h"
#include "columnar/reader/byte_source.h"

namespace kelvarin {

class FileWindow {
 public:
  explicit FileWindow(const ByteSource& source) : m_source(source) {}

  // `count` bytes from `offset` on, fewer where the file ends. They are valid until the next call.
  Bytes at(std::uint64_t offset, std::size_t count) {
    if (offset < m_begin || offset - m_begin > m_bytes.size() ||
        count > m_bytes.size() - (offset - m_begin)) {
      fill(offset, count);
    }
    const Bytes all = known(offset);
    return all.first(std::min(all.size(), count));
  }

  // The bytes from `offset` on that have been read already.
  Bytes known(std::uint64_t offset) const {
    const bool isInside = offset >= m_begin && offset - m_begin <= m_bytes.size();
    return isInside ? m_bytes.bytes(offset - m_begin) : Bytes();
  }

 private:
  static constexpr std::size_t kAhead = 64 << 10;

  // Allocates no more than the file has, whatever `count` says.
  void fill(std::uint64_t offset, std::size_t count) {
    const std::uint64_t size = m_source.size();
    const std::uint64_t left = size > offset ? size - offset : 0;
    m_begin = offset;
    m_bytes.resize(std::min<std::uint64_t>(std::max(count, kAhead), left));
    m_bytes.resize(m_source.readAt(offset, m_bytes.data(), m_bytes.size()));
  }

  const ByteSource& m_source;
  std::uint64_t m_begin = 0;
  ByteBuffer m_bytes;
};

}  // namespace kelvarin
