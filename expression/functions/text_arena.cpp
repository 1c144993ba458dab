#include "expression/functions/text_arena.h"

#include <algorithm>
#include <utility>

namespace kelvarin {

void TextArena::addChunk(std::size_t size) {
  constexpr std::size_t kFirstChunk = std::size_t{16} << 10;
  constexpr std::size_t kLargestChunk = std::size_t{1} << 20;
  m_bytesOfFullChunks += m_capacity - m_left;
  m_capacity = std::max(size, std::clamp(2 * m_capacity, kFirstChunk, kLargestChunk));
  m_chunks.push_back(std::make_unique_for_overwrite<char[]>(m_capacity));
  m_next = m_chunks.back().get();
  m_left = m_capacity;
}

void TextArena::clear() {
  if (m_chunks.size() > 1) {
    m_chunks.front() = std::move(m_chunks.back());
    m_chunks.resize(1);
  }
  m_next = m_chunks.empty() ? &s_nothing : m_chunks.front().get();
  m_left = m_capacity;
  m_bytesOfFullChunks = 0;
}

}  // namespace kelvarin
