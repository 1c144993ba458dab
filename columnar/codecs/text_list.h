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
  // The texts textOf(row), which are likely to be short; memory behind them, up to `endOfMemory`,
  // may be read as well.
  template <typename Rows, typename TextOf>
  void addWords(const Rows& rows, TextOf textOf, const unsigned char* endOfMemory) {
    constexpr std::size_t kShort = 16;
    std::size_t lengths = m_lengths.size();
    m_lengths.resize(lengths + rows.size());
    unsigned char* out = m_bytes.append((rows.size() + 1) * kShort);
    std::size_t left = rows.size();
    for (const auto row : rows) {
      const Bytes text = textOf(row);
      m_lengths[lengths++] = static_cast<std::uint32_t>(text.size());
      if (text.size() > kShort || endOfMemory - text.data() < static_cast<std::ptrdiff_t>(kShort))
          [[unlikely]] {
        m_bytes.resize(static_cast<std::size_t>(out - m_bytes.data()));
        m_bytes.append(text);
        out = m_bytes.append((left + 1) * kShort);
      } else {
        std::memcpy(out, text.data(), kShort);
        out += text.size();
      }
      --left;
    }
    m_bytes.resize(static_cast<std::size_t>(out - m_bytes.data()));
  }
  std::size_t size() const { return m_lengths.size(); }
  TextValues values() const { return {m_lengths, m_bytes.bytes()}; }

 private:
  std::vector<std::uint32_t> m_lengths;
  ByteBuffer m_bytes;
};

}  // namespace kelvarin
