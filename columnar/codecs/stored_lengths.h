// The lengths of texts as they are stored: one for all, or one each of 1, 2 or 4 bytes.
//
// Used by the encodings of texts.
// Layout: docs/gel-format.md, "Encodings of texts".
// Errors: a read returns false where the bytes are damaged.
#pragma once

#include "columnar/codecs/byte_buffer.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

// Appends the width of the lengths and the lengths, at least one.
void appendLengths(std::span<const std::uint32_t> lengths, ByteBuffer& out);

class StoredLengths {
 public:
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count) {
    std::uint8_t width = 0;
    if (!reader.read(width)) {
      return false;
    }
    m_width = width;
    if (width == 0) {
      return reader.read(m_same);
    }
    return (width == 1 || width == 2 || width == 4) && reader.readBytes(count * width, m_bytes);
  }

  // Calls use(length) for each of them.
  template <typename Use>
  void forEach(std::size_t count, Use use) const {
    switch (m_width) {
      case 0:
        for (std::size_t i = 0; i < count; ++i) {
          use(m_same);
        }
        return;
      case 1:
        return forEachOf<std::uint8_t>(count, use);
      case 2:
        return forEachOf<std::uint16_t>(count, use);
      default:
        return forEachOf<std::uint32_t>(count, use);
    }
  }

  bool areEqual() const { return m_width == 0; }

  std::uint64_t byteCount(std::size_t count) const {
    if (m_width == 0) {
      return std::uint64_t{byteCountOf(m_same)} * count;
    }
    std::uint64_t sum = 0;
    forEach(count, [&](std::uint32_t length) { sum += byteCountOf(length); });
    return sum;
  }

 private:
  template <typename Length, typename Use>
  void forEachOf(std::size_t count, Use use) const {
    constexpr auto kNull = static_cast<Length>(kNullLength);
    for (std::size_t i = 0; i < count; ++i) {
      const auto length = loadPacked<Length>(m_bytes.data() + i * sizeof(Length));
      use(length == kNull ? kNullLength : std::uint32_t{length});
    }
  }

  int m_width = 0;
  std::uint32_t m_same = 0;
  Bytes m_bytes;
};

}  // namespace kelvarin
