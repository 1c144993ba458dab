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
  std::size_t size() const { return m_lengths.size(); }
  TextValues values() const { return {m_lengths, m_bytes.bytes()}; }

 private:
  std::vector<std::uint32_t> m_lengths;
  ByteBuffer m_bytes;
};

}  // namespace kelvarin
