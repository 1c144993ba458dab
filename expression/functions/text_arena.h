// Memory for texts that are made while some rows are evaluated, and are dropped together.
//
// Threads: one.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace kelvarin {

class TextArena {
 public:
  TextArena() = default;
  // A copy has memory of its own, and nothing in it.
  TextArena(const TextArena&) {}
  TextArena& operator=(const TextArena&) = delete;

  // So many bytes, which stay where they are until clear().
  char* allocate(std::size_t size) {
    if (size > m_left) [[unlikely]] {
      addChunk(size);
    }
    char* bytes = m_next;
    m_next += size;
    m_left -= size;
    return bytes;
  }
  // Of the bytes allocated last, those that were not used.
  void shrink(std::size_t unused) {
    m_next -= unused;
    m_left += unused;
  }
  std::string_view copy(std::string_view text) {
    char* bytes = allocate(text.size());
    if (!text.empty()) {
      std::memcpy(bytes, text.data(), text.size());
    }
    return {bytes, text.size()};
  }

  // Since the last clear().
  std::size_t usedBytes() const { return m_bytesOfFullChunks + (m_capacity - m_left); }
  // The last chunk is kept, as it is the largest but for single long texts.
  void clear();

 private:
  void addChunk(std::size_t size);

  // Where texts without bytes are as long as there is no chunk.
  inline static char s_nothing = 0;

  std::vector<std::unique_ptr<char[]>> m_chunks;
  char* m_next = &s_nothing;  // in the last chunk
  std::size_t m_left = 0;
  std::size_t m_capacity = 0;  // of the last chunk
  std::size_t m_bytesOfFullChunks = 0;
};

}  // namespace kelvarin
