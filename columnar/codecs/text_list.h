// Texts that are collected one by one, contiguous in memory.
#pragma once

#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

class TextList {
 public:
  void clear() {
    m_lengths.clear();
    m_bytes.clear();
  }
  // The bytes do not count for a null text.
  void add(const unsigned char* bytes, std::uint32_t length) {
    m_lengths.push_back(length);
    m_bytes.appendShort(bytes, byteCountOf(length));
  }
  // A text that is likely to be short; memory behind it, up to `endOfMemory`, may be read as well.
  void addWord(Bytes text, const unsigned char* endOfMemory) {
    constexpr std::size_t kShort = 16;
    const bool isShort =
        text.size() <= kShort && endOfMemory - text.data() >= static_cast<std::ptrdiff_t>(kShort);
    if (!isShort) [[unlikely]] {
      return add(text.data(), static_cast<std::uint32_t>(text.size()));
    }
    m_lengths.push_back(static_cast<std::uint32_t>(text.size()));
    const std::size_t end = m_bytes.size() + text.size();
    std::memcpy(m_bytes.append(kShort), text.data(), kShort);
    m_bytes.resize(end);
  }
  std::size_t size() const { return m_lengths.size(); }
  TextValues values() const { return {m_lengths, m_bytes.bytes()}; }

 private:
  std::vector<std::uint32_t> m_lengths;
  ByteBuffer m_bytes;
};

}  // namespace kelvarin
